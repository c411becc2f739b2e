// New help topics from the update server: the overview lists them by number, and every one whose number is not in
// `help_info` is fetched and stored, one after another.
#pragma once

#include <string>
#include <string_view>

#include "help_windows/FeedChain.h"

namespace mv {

class ListView;

class HelpUpdates : public FeedChain {
  Q_OBJECT
 public:
  // `lvwHelpOverview` is filled with the overview: id, address, and whether the topic is still to be fetched ("yes").
  // Neither is owned.
  HelpUpdates(UpdatePanel& panel, ListView& lvwHelpOverview, QObject* parent);

  // Starts the whole check, anew when one is under way. Returns at once.
  void getHelp();
  // Fetches the topic of the first row marked "yes"; hides the panel when there is none.
  void fetchNextHelpTopic();

  InternetTransfer Inet5{0, this};  // the overview
  InternetTransfer Inet6{0, this};  // one topic

 private:
  void overviewCompleted();
  bool listTopic(std::string_view line);
  void chooseTopics();
  bool isWanted(int row);
  void topicCompleted();
  void importTopic(const std::string& file);

  ListView& lvwHelpOverview_;
  int fetched_ = 0;  // the row being fetched; none above it is marked
};

}  // namespace mv
