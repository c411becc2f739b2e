// One run of the program at a time in a folder. The kernel keeps who is first, so that nothing is left of a killed run.
#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>
#include <string>

namespace mv {

class SingleRun {
 public:
  // `folder` in UTF-8, by whatever path: what counts is the folder itself. One that does not exist, or a system that
  // refuses, makes every run the first.
  explicit SingleRun(const std::string& folder);
  ~SingleRun();
  SingleRun(const SingleRun&) = delete;
  SingleRun& operator=(const SingleRun&) = delete;

  bool isFirst() const { return first_; }
  // Calls the first run of the same user in this folder.
  void callFirst() const;
  // What a first run does when another calls it, on the event loop of this thread.
  void onCall(std::function<void()> work);

 private:
  std::string name_;
  int socket_ = -1;
  bool first_ = true;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace mv
