#include "demo/Feeds.h"

#include <QString>

#include "platform/Shell.h"

namespace mvtest {

namespace {

struct Definition {
  const char* name;
  const char* path;
  const char* description;
};

constexpr Definition kDefinitions[] = {
    {"Message board", "/feeds/board.txt", "Boards that ask for a name and a password on their first page."},
    {"Picture exchange", "/feeds/exchange.txt", "Exchanges whose members sign in before they see the large pictures."},
    {"Reading room", "/feeds/reading-room.txt", "Reading rooms with a card number and a secret word."},
};
static_assert(std::size(kDefinitions) == kFeedDefinitions);

struct Topic {
  int id;
  const char* subject;
  const char* name;
  const char* text;
};

constexpr Topic kTopics[] = {
    {11, "News from the maker", "What is new in spring",
     "Login forms for message boards, picture exchanges and reading rooms have come in. You find them under Optional "
     "Info, Authentication of a site."},
    {12, "News from the maker", "Slow servers",
     "A site that answers slowly is not in a hurry: leave it running over night with automatic scanning."},
    {13, "Questions and answers", "Why is a file not fetched again?",
     "Every link is tried once. Clear the site's link cache to have all of them tried anew."},
    {14, "Questions and answers", "Can I have smaller pictures left out?",
     "Yes: raise the lower limit of the site. It is counted in kilobytes."},
};
static_assert(std::size(kTopics) == kFeedTopics);

std::string line(const std::string& text) { return text + "\r\n"; }

std::string field(const char* name, int number, const char* search, const char* byUser, const char* prompt,
                  const char* parameter, const std::string& value) {
  return line("---START FIELD---") + line(name) + line(std::to_string(number)) + line(search) + line(byUser) +
         line(prompt) + line(parameter) + line(value) + line("---END FIELD---");
}

std::string definitionText(const Definition& definition, const TestSite& site) {
  return line("---START FORM---") + line(definition.name) + line(definition.description) + line("Authentication") +
         line("---END FORM---") + field("Address", 1, "action=", "no", "NO PROMPT", "", site.host() + "/login") +
         field("Name", 2, "name='user'", "yes", "Your name", "user", "") +
         field("Password", 3, "name='word'", "yes", "Your password", "word", "");
}

void serve(TestSite& site, const std::string& path, const std::string& text, int delayMs = 0) {
  site.add(path, {.type = "text/plain", .body = text, .delayMs = delayMs});
}

}  // namespace

void fillFeeds(TestSite& site, const std::string& slowTopic, int delayMs) {
  std::string overview;
  for (const Definition& definition : kDefinitions) {
    overview += line(std::string(definition.name) + ",2001-05-04," + site.url(definition.path));
    serve(site, definition.path, definitionText(definition, site));
  }
  serve(site, "/morvane2000/formupdates/overview.txt", overview + line("---END---"));

  std::string topics;
  for (const Topic& topic : kTopics) {
    const std::string path = "/feeds/topic" + std::to_string(topic.id) + ".txt";
    topics += line(std::to_string(topic.id) + ", " + site.url(path) + "--" + topic.name);
    serve(site, path, line(std::to_string(topic.id)) + line(topic.subject) + line(topic.name) + topic.text,
          path == slowTopic ? delayMs : 0);
  }
  serve(site, "/morvane2000/help/helpoverview.txt", topics + line("---END---"));

  serve(site, "/morvane2000/message.txt",
        std::to_string(kFeedMessage) + "\n" + site.url("/about/index.html") +
            "\nNew login forms and help topics have been fetched for you.\n\nGo shows the page about them.\n");
}

void useAsUpdateServer(const TestSite& site) {
  mv::saveUserSetting("Morvane2000", "Servers", "UpdateHost", QString::fromStdString(site.host()));
  mv::saveUserSetting("Morvane2000", "TheSection", "LastMessageID", "1");
}

}  // namespace mvtest
