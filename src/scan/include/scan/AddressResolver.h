// The addresses of a page, made whole: a reference as an attribute holds it becomes the link that the link parser
// takes. By RFC 3986, section 5, with what browsers forgive: blanks at both ends, tabs and line breaks anywhere.
#pragma once

#include <QUrl>
#include <functional>
#include <string>
#include <string_view>

namespace mv {

class AddressResolver {
 public:
  // UTF-8 to the page's own character set, in which the query part of its addresses is meant.
  using Encode = std::function<std::string(std::string_view)>;

  // The page that answered at `address`, without a scheme by http. `encode` null: UTF-8. Forgets the base.
  void setPage(std::string_view address, Encode encode);
  // The value of <base href>, resolved against the page; what cannot be a base changes nothing.
  void setBase(std::string_view href);

  // Sets `link` to what `reference` (UTF-8, character references replaced) leads to: host in lower case, in Unicode and
  // without the scheme's usual port, no dot segments, no fragment, a path of at least "/". Path as readable as it is
  // written, its escapes left alone; query percent-encoded. An absolute reference keeps "http://" or "https://"; a
  // relative one becomes host and path. False, and `link` is of no use: empty, a fragment only, of another scheme, or
  // no address.
  bool resolve(std::string_view reference, std::string& link) const;

  // The same for what most references are, and what needs no resolver: a place beside the page or from its host's root,
  // or an address as this program writes it. False for others, and for all that hold a "&".
  bool resolveSimple(std::string_view path, std::string& link) const;

 private:
  void setBaseUrl(const QUrl& url);
  bool resolveAny(std::string_view reference, std::string& link) const;
  void appendQuery(std::string_view query, std::string& link) const;

  Encode encode_;
  QUrl page_;
  QUrl base_;
  std::string host_;    // of base_, with port
  std::string folder_;  // of base_, from the host on
};

}  // namespace mv
