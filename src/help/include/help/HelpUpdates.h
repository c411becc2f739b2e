// New help topics from the update server: the overview lists them by number, and every one whose number is not in
// `help_info` is fetched and stored, one after another.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "help/FeedChain.h"
#include "help/FeedParsers.h"

namespace mv {

class HelpUpdates : public FeedChain {
  Q_OBJECT
 public:
  explicit HelpUpdates(QObject* parent);

  // Starts the whole check, anew when one is under way. Returns at once.
  void getHelp();
  // Fetches the first topic that is marked; ends the chain when there is none.
  void fetchNextHelpTopic();

  InternetTransfer Inet5{0, this};  // the overview
  InternetTransfer Inet6{0, this};  // one topic

 Q_SIGNALS:
  // The list of the topics of the overview, for whoever shows it: emptied; one more at its end, marked; and whether the
  // topic of a row (from 0) is marked, which means still to be fetched.
  void listCleared();
  void topicListed(const mv::TopicEntry& topic);
  void topicMarked(int row, bool marked);

 private:
  struct Listed {
    TopicEntry topic;
    bool marked = true;
  };

  void overviewCompleted();
  bool listTopic(std::string_view line);
  void chooseTopics();
  bool isWanted(const TopicEntry& topic);
  void mark(std::size_t row, bool marked);
  void topicCompleted();
  void importTopic(const std::string& file);

  std::vector<Listed> list_;
  std::size_t fetched_ = 0;  // the row being fetched; none above it is marked
};

}  // namespace mv
