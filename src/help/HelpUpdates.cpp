#include "help/HelpUpdates.h"

#include "base/Text.h"
#include "base/WebAddress.h"
#include "help/VendorServers.h"
#include "net/TextBody.h"

namespace mv {

namespace {

constexpr const char* kOverviewPath = "/morvane2000/help/helpoverview.txt";

std::string nameOf(std::int64_t id) { return "help topic " + std::to_string(id); }

}  // namespace

HelpUpdates::HelpUpdates(QObject* parent) : FeedChain("HelpUpdates", parent) {
  handle(Inet5, "Inet5", [this] { overviewCompleted(); });
  handle(Inet6, "Inet6", [this] { topicCompleted(); });
}

void HelpUpdates::getHelp() {
  endChain();
  Inet6.cancel();
  Q_EMIT progress("Checking the Help Server");
  get(Inet5, updatePage(kOverviewPath));
}

void HelpUpdates::overviewCompleted() {
  std::string overview = readTextBody(Inet5);
  if (!holdsEndMark(overview)) return endChain();
  Q_EMIT progress("Processing help overview information");
  list_.clear();
  Q_EMIT listCleared();
  readOverview(
      std::move(overview), [this](std::string_view line) { return listTopic(line); }, [this] { chooseTopics(); });
}

bool HelpUpdates::listTopic(std::string_view line) {
  const auto topic = readTopicEntry(line);
  if (!topic) return false;
  list_.push_back({*topic});
  Q_EMIT topicListed(*topic);
  return true;
}

void HelpUpdates::chooseTopics() {
  Q_EMIT progress("Processing help update information");
  inSlices(
      [this, row = std::size_t{0}]() mutable {
        if (row == list_.size()) return false;
        mark(row, isWanted(list_[row].topic));
        ++row;
        return true;
      },
      [this] {
        fetched_ = 0;
        fetchNextHelpTopic();
      });
}

bool HelpUpdates::isWanted(const TopicEntry& topic) {
  if (hasHelpTopic(topic.id)) return false;
  if (isWebAddress(toQString(topic.url))) return true;
  refuse(nameOf(topic.id), "its address is not http or https");
  return false;
}

void HelpUpdates::mark(std::size_t row, bool marked) {
  list_[row].marked = marked;
  Q_EMIT topicMarked(static_cast<int>(row), marked);
}

void HelpUpdates::fetchNextHelpTopic() {
  while (fetched_ < list_.size() && !list_[fetched_].marked) ++fetched_;
  if (fetched_ == list_.size()) return endChain();
  get(Inet6, toQString(list_[fetched_].topic.url));
}

void HelpUpdates::topicCompleted() {
  inSlices(
      [this, file = withCrLf(readTextBody(Inet6))] {
        importTopic(file);
        return false;
      },
      [this] {
        mark(fetched_, false);
        fetchNextHelpTopic();
      });
}

void HelpUpdates::importTopic(const std::string& file) {
  const auto topic = readHelpTopic(file);
  if (!topic) return refuse(nameOf(list_[fetched_].topic.id), "its file cannot be read");
  if (isRefused(nameOf(topic->id), {topic->subject, topic->topic}, topic->text)) return;
  Q_EMIT progress("Adding help for " + topic->subject);
  Q_EMIT progress("Adding help for " + topic->subject + ": " + topic->topic);
  // A file that bears another number than the overview gave it would be fetched, and stored, at every start.
  if (hasHelpTopic(topic->id)) return refuse(nameOf(topic->id), "there is one of that number");
  insertHelpTopic(*topic);
}

}  // namespace mv
