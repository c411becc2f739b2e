// The addresses of a page, made whole: a reference as an attribute holds it becomes the link that the link parser
// takes. By RFC 3986, section 5, with what browsers forgive: blanks at both ends, tabs and line breaks anywhere.
#pragma once

#include <QUrl>
#include <string>
#include <string_view>

namespace mv {

class AddressResolver {
 public:
  // The page that answered at `address`, without a scheme by http. Forgets the base.
  void setPage(std::string_view address);
  // The value of <base href>, resolved against the page; what cannot be a base changes nothing.
  void setBase(std::string_view href);

  // Sets `link` to what `reference` (UTF-8, character references replaced) leads to: host in lower case, in Unicode and
  // without the scheme's usual port, no dot segments, no fragment, a path of at least "/". Path as readable as it is
  // written, its escapes left alone; of the query what is ASCII percent-encoded, for the rest depends on the page's
  // character set. An absolute reference keeps "http://" or "https://"; a
  // relative one becomes host and path. False, and `link` is of no use: empty, a fragment only, of another scheme, or
  // no address.
  bool resolve(std::string_view reference, std::string& link) const;

  // The same for what most references are, and what needs no resolver: a place beside the page or from its host's root,
  // or an address as this program writes it. False for others, and for all that hold a "&".
  bool resolveSimple(std::string_view path, std::string& link) const;

 private:
  void setBaseUrl(const QUrl& url);
  bool resolveAny(std::string_view reference, std::string& link) const;

  QUrl page_;
  QUrl base_;
  std::string host_;    // of base_, with port
  std::string folder_;  // of base_, from the host on
};

}  // namespace mv
