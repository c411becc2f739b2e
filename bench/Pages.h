// Pages as sites have them: mixed text, many tags, a link every few hundred bytes. The same at every run.
#pragma once

#include <array>
#include <random>
#include <string>
#include <string_view>

namespace mvbench {

class PageMaker {
 public:
  explicit PageMaker(unsigned seed = 1) : random_(seed) {}

  // A page of at least `bytes` bytes.
  std::string page(std::size_t bytes) {
    text_ =
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head><title>Pictures of the coast</title>\n"
        "<meta charset=\"utf-8\">\n<link rel=\"stylesheet\" href=\"/style/main.css\">\n</head>\n<body>\n";
    while (text_.size() < bytes) block();
    return std::move(text_ += "</body></html>\n");
  }

 private:
  int any(int below) { return std::uniform_int_distribution<>(0, below - 1)(random_); }
  std::string number() { return std::to_string(any(100'000)); }

  void words(int count) {
    static constexpr std::array<std::string_view, 16> kWords{
        "the ",   "harbour ", "of ",      "a ",        "lighthouse ", "in ",          "early ",        "morning, ",
        "boats ", "and ",     "cliffs. ", "walking\n", "north ",      "caf\xC3\xA9 ", "photographed ", "again "};
    for (; count > 0; --count) text_ += kWords[static_cast<std::size_t>(any(16))];
  }

  void block() {
    switch (any(6)) {
      case 0:
        text_ += "<div class=\"entry\" id=\"e" + number() + "\"><h2>";
        words(5);
        text_ += "</h2>\n<p>";
        words(60);
        text_ += "</p></div>\n";
        return;
      case 1:
        text_ += "<li><a href=\"/gallery/" + number() + "/index.html\">";
        words(3);
        text_ += "</a></li>\n";
        return;
      case 2:
        text_ += "<td class=\"thumb\"><a href=\"photo" + number() + ".jpg\"><img src=\"thumbs/t" + number() +
                 ".jpg\" width=\"120\" height=\"90\" alt=\"\"></a></td>\n";
        return;
      case 3:
        text_ += "<table border=\"0\"><tr><td>" + number() + "</td><td><b>";
        words(2);
        text_ += "</b></td></tr></table>\n";
        return;
      case 4:
        text_ += "<p>";
        words(30);
        text_ += "<a class=\"more\" href=\"/story/" + number() + ".html\">more</a> <a href=\"http://www.host" +
                 number() + ".example/\">";
        words(2);
        text_ += "</a></p>\n<script>var x = " + number() + "; if (x < 10) { show(x); }</script>\n";
        return;
      default:
        text_ += "<span style=\"color:#334\">";
        words(8);
        text_ += "</span><br>\n";
    }
  }

  std::mt19937 random_;
  std::string text_;
};

}  // namespace mvbench
