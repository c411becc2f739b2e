#include "app/ReportError.h"

#include <QScopeGuard>
#include <set>

#include "app/UserNotice.h"
#include "database/Database.h"
#include "files/AtomicFile.h"

namespace mv {
namespace {

constexpr long kMissingSubItem = 35600;

}  // namespace

void reportError(long number, const std::string& description, const std::string& source, const std::string& extra) {
  if (number == kMissingSubItem && source == "ListSubItems") return;
  const std::string text =
      "An error has occured\r\n" + std::to_string(number) + "\r\n" + description + "\r\n" + source + "\r\n" + extra;
  // A timer that fails at every tick must not pile up boxes.
  static std::set<std::string> onScreen;
  const auto [place, isNew] = onScreen.insert(text);
  if (!isNew) return;
  const auto closed = qScopeGuard([shown = place] { onScreen.erase(shown); });
  notifyUser({{}, text, NoticeIcon::Critical});
}

void reportException(const std::exception& error, const std::string& source, const std::string& extra) {
  if (const auto* database = dynamic_cast<const DatabaseError*>(&error))
    reportError(database->number(), database->description(), database->source().empty() ? source : database->source(),
                extra);
  else if (const auto* file = dynamic_cast<const FileError*>(&error))
    reportError(file->number(), file->what(), source, extra);
  else
    reportError(0, error.what(), source, extra);
}

}  // namespace mv
