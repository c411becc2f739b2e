// The elements that a tokenizer has to know by name: those whose start tags are looked for, and those that change how
// what follows them is read. Found without letter case, by a name that is read letter by letter.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "html/HtmlCharacters.h"

namespace mv {

// What an element does to the tokenizer, or to the tree builder where that decides for the tokenizer.
enum class HtmlContent : std::uint8_t {
  Ordinary,
  RawText,
  Script,
  PlainText,
  Svg,
  MathMl,
  SvgIntegration,
  MathIntegration
};

// A start tag that is looked for.
struct WantedElement {
  std::string element;                  // in lower case
  std::vector<std::string> attributes;  // in lower case, at most kMost
  static constexpr std::size_t kMost = 32;
};

struct HtmlElement {
  static constexpr std::size_t kNotWanted = static_cast<std::size_t>(-1);

  std::string name = {};  // in lower case
  std::uint64_t key = 0;  // of the name, see HtmlElements::keyed
  HtmlContent content = HtmlContent::Ordinary;
  bool needsEndTag = false;  // for its content
  bool endsForeignContent = false;
  std::size_t wanted = kNotWanted;  // its place in what is wanted
  std::vector<std::string> attributes = {};
};

class HtmlElements {
 public:
  // Each element once. Pointers that find() has given end.
  void setWanted(const std::vector<WantedElement>& wanted);

  // The key of a name that has one letter more, in lower case; 0 is that of the empty name. A name of up to eight
  // letters is its key; of a longer one the key holds the last eight.
  static constexpr std::uint64_t keyed(std::uint64_t key, unsigned char letter) { return key << 8U | letter; }
  // Null when `name`, whose key it is, is none of them.
  const HtmlElement* find(std::uint64_t key, std::string_view name) const {
    for (std::size_t slot = slotOf(key); slots_[slot] != 0; slot = (slot + 1) % kSlots) {
      const HtmlElement& element = elements_[slots_[slot]];
      if (element.key != key) continue;
      if (name.size() <= sizeof key || equalsFolded(name, element.name)) return &element;
    }
    return nullptr;
  }

 private:
  static constexpr std::size_t kSlots = 512;
  static constexpr std::size_t slotOf(std::uint64_t key) {
    return static_cast<std::size_t>(key * 0x9E3779B97F4A7C15U >> 55U);  // as many bits as kSlots has
  }

  HtmlElement& elementOf(std::string_view name);
  void makeTable();

  std::vector<HtmlElement> elements_;
  std::vector<std::uint16_t> slots_;  // element numbers by a hash of the key, 0: free
};

}  // namespace mv
