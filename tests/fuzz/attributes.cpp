// The values of attributes: references, candidates of pictures, refreshes, styles; and a link made of them.
#include <string>

#include "AddressAttributes.h"
#include "CharacterReferences.h"
#include "Fuzz.h"
#include "html/AddressResolver.h"

namespace {

bool isPartOf(std::string_view part, std::string_view whole) {
  return part.empty() || (part.data() >= whole.data() && part.data() + part.size() <= whole.data() + whole.size());
}

}  // namespace

void mvfuzz::fuzzOne(std::string_view input) {
  const std::string page(takePart(input));
  if (!isUtf8(page) || !isUtf8(input)) return;
  const std::string value = mv::withoutCharacterReferences(input);
  require(isUtf8(value), "references stand for characters");
  require(value.size() <= input.size() + 4, "a reference is no shorter than its character");
  require(isPartOf(mv::largestCandidate(value), value), "a candidate is a part of the list");
  require(isPartOf(mv::refreshTarget(value), value), "a target is a part of the content");
  std::string_view rest = input;
  while (const auto address = mv::takeStyleAddress(rest)) {
    require(isPartOf(*address, input), "an address of a style is a part of it");
    require(isPartOf(rest, input), "what follows it, too");
  }

  mv::AddressResolver resolver;
  resolver.setPage(page);
  std::string link;
  std::string simple;
  if (resolver.resolve(value, link)) {
    require(!link.empty() && link.find_first_of("\t\r\n#") == std::string::npos, "a link is one line without fragment");
    if (resolver.resolveSimple(value, simple)) require(simple == link, "the short way leads to the same place");
  }
  resolver.setBase(value);
  resolver.resolve(page, link);
}
