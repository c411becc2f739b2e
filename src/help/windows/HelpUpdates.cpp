#include "help_windows/HelpUpdates.h"

#include "app/Settings.h"
#include "base/Text.h"
#include "desktop/Browser.h"
#include "desktop/ListView.h"
#include "help/FeedParsers.h"
#include "help/VendorServers.h"
#include "help_windows/UpdatePanel.h"
#include "net/TextBody.h"

namespace mv {

namespace {

constexpr const char* kOverviewPath = "/morvane2000/help/helpoverview.txt";
constexpr const char* kYes = "yes";
constexpr const char* kNo = "no";

enum Column { kId, kUrl, kFetch };

// The id is a whole number, as text; the column's integer affinity makes a number of it.
bool isKnown(const std::string& id) {
  return gDatabase.count("select count(*) as outCount from help_info where id = " + quoted(id)) > 0;
}

}  // namespace

HelpUpdates::HelpUpdates(UpdatePanel& panel, ListView& lvwHelpOverview, QObject* parent)
    : FeedChain("HelpUpdates", &panel, parent), lvwHelpOverview_(lvwHelpOverview) {
  lvwHelpOverview_.setColumns({{"id"}, {"url"}, {"fetch"}});
  handle(Inet5, "Inet5", [this] { overviewCompleted(); });
  handle(Inet6, "Inet6", [this] { topicCompleted(); });
}

void HelpUpdates::getHelp() {
  endChain();
  Inet6.cancel();
  say("Checking the Help Server");
  get(Inet5, updatePage(kOverviewPath));
}

void HelpUpdates::overviewCompleted() {
  std::string overview = readTextBody(Inet5);
  if (!holdsEndMark(overview)) return endChain();
  say("Processing help overview information");
  lvwHelpOverview_.clearRows();
  readOverview(
      std::move(overview), [this](std::string_view line) { return listTopic(line); }, [this] { chooseTopics(); });
}

bool HelpUpdates::listTopic(std::string_view line) {
  const auto entry = readTopicEntry(line);
  if (entry) lvwHelpOverview_.addRow({toQString(entry->id), toQString(entry->url), kYes});
  return entry.has_value();
}

void HelpUpdates::chooseTopics() {
  say("Processing help update information");
  inSlices(
      [this, row = 0]() mutable {
        if (row == lvwHelpOverview_.rowCount()) return false;
        lvwHelpOverview_.setCell(row, kFetch, isWanted(row) ? kYes : kNo);
        ++row;
        return true;
      },
      [this] {
        fetched_ = 0;
        fetchNextHelpTopic();
      });
}

bool HelpUpdates::isWanted(int row) {
  const std::string id = toUtf8(lvwHelpOverview_.cell(row, kId));
  if (isKnown(id)) return false;
  if (isWebAddress(lvwHelpOverview_.cell(row, kUrl))) return true;
  logRefusal("help topic " + id, "its address is not http or https");
  return false;
}

void HelpUpdates::fetchNextHelpTopic() {
  while (fetched_ < lvwHelpOverview_.rowCount() && lvwHelpOverview_.cell(fetched_, kFetch) != kYes) ++fetched_;
  if (fetched_ == lvwHelpOverview_.rowCount()) return endChain();
  get(Inet6, lvwHelpOverview_.cell(fetched_, kUrl));
}

void HelpUpdates::topicCompleted() {
  inSlices(
      [this, file = withCrLf(readTextBody(Inet6))] {
        importTopic(file);
        return false;
      },
      [this] {
        lvwHelpOverview_.setCell(fetched_, kFetch, kNo);
        fetchNextHelpTopic();
      });
}

void HelpUpdates::importTopic(const std::string& file) {
  const auto topic = readHelpTopic(file);
  if (!topic)
    return logRefusal("help topic " + toUtf8(lvwHelpOverview_.cell(fetched_, kId)), "its file cannot be read");
  if (isRefused("help topic " + topic->id, {topic->subject, topic->topic}, topic->text)) return;
  say("Adding help for " + topic->subject);
  say("Adding help for " + topic->subject + ": " + topic->topic);
  // A file that bears another number than the overview gave it would be fetched, and stored, at every start.
  if (isKnown(topic->id)) return logRefusal("help topic " + topic->id, "there is one of that number");
  gDatabase.execute("insert into help_info (id, subject, the_text, hide, the_topic) values (" + quoted(topic->id) +
                    ", " + quoted(topic->subject) + ", " + quoted(topic->text) + ", " + quoted("no") + ", " +
                    quoted(topic->topic) + ")");
}

}  // namespace mv
