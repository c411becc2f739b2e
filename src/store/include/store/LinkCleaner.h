// Deletes the stored links of a site without holding the user-interface thread: a small cache is gone when the call
// returns, a large one goes on in later events.
#pragma once

#include <QObject>
#include <cstdint>
#include <deque>
#include <optional>

#include "store/Id.h"

namespace mv {

class LinkCleaner : public QObject {
  Q_OBJECT
 public:
  static LinkCleaner& instance();

  // Deletes the links that the site has now; links that a running scan stores later stay. Raises DatabaseError for the
  // part done at once; a failure later is shown, and ends the work on that site.
  void clear(Id siteId);
  // Goes on where a killed program left off: clears what is left of the links of sites that are gone. Raises
  // DatabaseError.
  void resume();
  bool isIdle() const { return work_.empty(); }
  // Does all that is left at once: before the database is closed. Raises DatabaseError.
  void finish();

 private:
  struct Work {
    std::optional<Id> siteId;  // nullopt: of all sites that are gone
    std::int64_t lastLink;     // the newest link when the clearing was asked for
  };

  void add(std::optional<Id> siteId);
  // Deletes more of the first site's links, for as long as one iteration of the event loop may take.
  void deleteSome();
  // Deletes a few of them. False when none are left: the site is off the list.
  bool deleteNext();
  void goOn();

  std::deque<Work> work_;
  bool scheduled_ = false;
};

// What every end of the program does before it closes the database: finish(), a failure shown.
void finishClearing();
// Ends the program at once; but a cache that was to be cleared must not come back half at the next start.
void clearAndEndProgram();

}  // namespace mv
