// The address of a link as the table keeps it.
#pragma once

#include <string>
#include <string_view>

namespace mv {

// `address`, UTF-8, as it stands in a page of `encoding` (InternetTransfer::TextEncoding): the path stays readable, in
// the query everything but ASCII is percent-encoded as the page's encoding writes it, and a NUL character becomes the
// replacement character (U+FFFD) as in the HTML standard. Escapes of the page stay as they are. What is requested is
// the same whether the address was stored once or twice.
std::string storedAddress(std::string address, std::string_view encoding);

}  // namespace mv
