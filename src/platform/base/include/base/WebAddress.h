// What is a page of the web, and may therefore be fetched or handed to a browser; and what of an address may be shown.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace mv {

// `url` is the whole address of a page: scheme http or https, and a host.
bool isWebAddress(const QString& url);

// `address`, with or without a scheme, with the password of its user information replaced by "***": what windows, their
// titles, the keys of their places and the logs may show. The user name stays, so that two users of one host differ.
std::string maskPassword(std::string_view address);
// The same for every address with a scheme that `text` holds.
std::string maskPasswords(std::string_view text);

}  // namespace mv
