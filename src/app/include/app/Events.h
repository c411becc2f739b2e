// What has happened in one part of the program and concerns others, which the one who tells need not know. An event is
// told at once, to every receiver in the order in which they connected; slots must not throw.
#pragma once

#include <QObject>
#include <cstdint>
#include <string>

namespace mv {

class Events : public QObject {
  Q_OBJECT
 Q_SIGNALS:
  // The program is about to end, with the database still open: what must not be lost is finished now, in seconds.
  void programEnding();
  // A download has saved a file: its full path.
  void fileSaved(const std::string& path);
  // A scan's login request was answered with a page without the form: sessions that had ended are open again.
  void siteLoggedIn(std::int64_t siteId);
  // A process window was opened or ended.
  void processesChanged();
  // The user has asked to start sites; none of them has been started yet.
  void sitesStarting();
  // The site editor has stored a new site, or changes of one.
  void siteAdded(std::int64_t id);
  void siteEdited(std::int64_t id);
  // Cancel of an editor has deleted the record that its Apply had made.
  void siteTakenBack(std::int64_t id);
  void filterTakenBack(std::int64_t id);
};

// The one instance.
Events& events();

}  // namespace mv
