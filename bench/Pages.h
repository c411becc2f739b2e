// Pages as sites have them: mixed text, many tags, a link every few hundred bytes; and pages as they are generated
// today: long tags of many attributes, scripts, style sheets, comments, inline pictures. The same at every run.
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

  std::string pageOfToday(std::size_t bytes) {
    text_ =
        "<!DOCTYPE html>\n<html lang=\"en\" class=\"no-js\">\n<head><meta charset=\"utf-8\">\n<title>Coast</title>\n"
        "<style>.card>a{color:#334}.card:hover{margin:0}</style></head><body class=\"page page--home\">\n";
    while (text_.size() < bytes) blockOfToday();
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

  void blockOfToday() {
    switch (any(6)) {
      case 0:
        return cardOfToday();
      case 1:
        return navigationOfToday();
      case 2:
        return pictureOfToday();
      case 3:
        return scriptOfToday();
      case 4:
        return commentOfToday();
      default:
        return storyOfToday();
    }
  }

  void cardOfToday() {
    text_ += "<div class=\"card card--wide js-card\" id=\"c" + number() + "\" data-id=\"" + number() +
             "\" data-track='{\"kind\":\"card\",\"place\":" + number() +
             "}' role=\"group\" aria-label=\"Story of the day\">\n  <h2 class=\"card__title\"><span>";
    words(5);
    text_ += "</span></h2>\n  <p class=\"card__text\">";
    words(40);
    text_ += "</p>\n</div>\n";
  }

  void navigationOfToday() {
    text_ += "<a class=\"nav__link nav__link--more\" data-event=\"click\" href=\"/story/" + number() +
             "/?from=list&amp;page=" + number() + "#top\" rel=\"noopener\" target=\"_blank\" title=\"More\">";
    words(3);
    text_ += "</a>\n";
  }

  void pictureOfToday() {
    const std::string picture = "/media/2024/" + number();
    text_ +=
        "<img class=\"lazy\" loading=\"lazy\" decoding=\"async\" width=\"640\" height=\"480\" alt=\"\" "
        "src=\"data:image/gif;base64,R0lGODlhAQABAIAAAAAAAP///yH5BAEAAAAALAAAAAABAAEAAAIBRAA7\" data-src=\"" +
        picture + ".jpg\" srcset=\"" + picture + "-320.jpg 320w, " + picture + "-640.jpg 640w, " + picture +
        "-1280.jpg 1280w\" sizes=\"(max-width: 600px) 100vw, 50vw\">\n";
  }

  void scriptOfToday() {
    text_ += "<script type=\"module\" async>!function(e,t){for(var n=0;n<t.length;n++)if(t[n]<" + number() +
             "&&e>n){e.innerHTML='<a href=\"/no/'+n+'\">'+n+'<\\/a>';}return e}(window.items||[],[" + number() + "," +
             number() + "]);</script>\n";
  }

  void commentOfToday() {
    text_ += "<!-- block " + number() + " <a href=\"/old/" + number() + "\"> ";
    words(12);
    text_ +=
        " -->\n<svg class=\"icon\" width=\"24\" height=\"24\" viewBox=\"0 0 24 24\" aria-hidden=\"true\"><path "
        "d=\"M12 " +
        number() + "a8 8 0 1 0 0 16z\" fill=\"currentColor\"/></svg>\n";
  }

  void storyOfToday() {
    text_ += "<p class=\"text\">";
    words(50);
    text_ += "<a href=\"https://www.host" + number() + ".example/a/" + number() + "\">";
    words(2);
    text_ += "</a></p>\n";
  }

  std::mt19937 random_;
  std::string text_;
};

}  // namespace mvbench
