// Work off the user-interface thread. Whoever has something done that takes long holds one of these:
//
//   work_.start([path] { return decoded(path); }, [this](const QImage& image) { show(image); });
//
// The first function runs at once on a thread of its own, beside older work that has not ended. It must not throw, and
// what it shares with others is guarded, or left alone by them until it has ended. The second one is given its result
// in an event of the thread that holds the BackgroundWork, unless newer work was started meanwhile.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>

class QObject;

namespace mv {

class BackgroundWork {
 public:
  BackgroundWork();
  // Abandons what was started. It does not wait: whoever is needed by his work waits for it first.
  ~BackgroundWork();
  BackgroundWork(const BackgroundWork&) = delete;
  BackgroundWork& operator=(const BackgroundWork&) = delete;

  template <class Work, class Done>
  void start(Work work, Done done) {
    const auto result = std::make_shared<std::optional<decltype(work())>>();
    run([result, work = std::move(work)] { result->emplace(work()); },
        [result, done = std::move(done)] { done(std::move(**result)); });
  }
  // Without a result.
  void start(std::function<void()> work) { run(std::move(work), {}); }

  // Work that has not begun is dropped, and no result is handed over any more.
  void abandon();
  // Whether all work has ended within so many milliseconds; below 0 it is waited for however long it takes.
  bool wait(int milliseconds = -1);

 private:
  struct Shared;
  void run(std::function<void()> work, std::function<void()> done);

  std::unique_ptr<QObject> receiver_;  // of the events
  std::shared_ptr<Shared> shared_;
};

}  // namespace mv
