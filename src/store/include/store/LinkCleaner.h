// Deletes the stored links of a site, or of all, without holding the user-interface thread: a small cache is gone when
// the call returns, a large one goes on in later events.
#pragma once

#include <QObject>
#include <cstdint>
#include <deque>

#include "store/Id.h"
#include "store/StoreTrouble.h"

namespace mv {

class LinkCleaner : public QObject {
  Q_OBJECT
 public:
  static LinkCleaner& instance();

  // Deletes the links that the site has now; links that a running scan stores later stay. Raises DatabaseError for the
  // part done at once. A failure later that may pass is waited for, without holding the thread; any other one is shown,
  // and ends the work on that site.
  void clear(Id siteId);
  // The same for all sites.
  void clearAll();
  // Goes on where a killed program left off: clears what is left of the links of sites that are gone. Raises
  // DatabaseError.
  void resume();
  bool isIdle() const { return work_.empty(); }
  // How many links are gone since it was idle last.
  std::int64_t deleted() const { return deleted_; }
  // Has work since then ended with an error? It has been shown.
  bool hasFailed() const { return hasFailed_; }
  // How much of the work at hand is done, about, 0 to 100; -1 where that is not known beforehand.
  int percent() const;
  // Does all that is left at once: before the database is closed. Raises DatabaseError.
  void finish();

 private:
  enum class Of { OneSite, GoneSites, AllSites };
  struct Work {
    Of of;
    Id siteId = 0;
    std::int64_t firstLink = 0;  // the oldest and
    std::int64_t lastLink = 0;   // the newest when the clearing was asked for
    // Ids may be any of 64 bits.
    std::uint64_t span() const { return static_cast<std::uint64_t>(lastLink) - static_cast<std::uint64_t>(firstLink); }
  };

  enum class Locks { Awaited, NotAwaited };  // of other programs

  LinkCleaner();
  void add(const Work& work);
  // What cannot be deleted is off the list.
  void deleteOrDrop();
  // Deletes more of the first site's links, for as long as one iteration of the event loop may take.
  void deleteSome(Locks locks);
  // Deletes a few of them. False when none are left: the site is off the list.
  bool deleteNext(Locks locks);
  void drop();
  void takePiece();
  void goOn();

  static std::int64_t deleteFew(const Work& work);
  static std::int64_t deleteFewAtOnce(const Work& work);

  std::deque<Work> work_;
  std::int64_t deleted_ = 0;
  bool hasFailed_ = false;
  bool scheduled_ = false;
  StoreTrouble trouble_;
};

// What every end of the program does before it closes the database: finish(), a failure shown.
void finishClearing();
// Ends the program at once; but a cache that was to be cleared must not come back half at the next start.
void clearAndEndProgram();

}  // namespace mv
