#include "app/ReportError.h"

#include <set>
#include <tuple>

#include "app/UserNotice.h"
#include "database/Database.h"
#include "files/AtomicFile.h"

namespace mv {
namespace {

constexpr long kMissingSubItem = 35600;

// Keeps a text among those on the screen for as long as its box stands.
class OpenText {
 public:
  explicit OpenText(const std::string& text) { std::tie(place_, isNew_) = open().insert(text); }
  ~OpenText() {
    if (isNew_) open().erase(place_);
  }
  OpenText(const OpenText&) = delete;
  OpenText& operator=(const OpenText&) = delete;
  bool isNew() const { return isNew_; }

 private:
  static std::set<std::string>& open() {
    static std::set<std::string> texts;
    return texts;
  }
  std::set<std::string>::iterator place_;
  bool isNew_ = false;
};

}  // namespace

void reportError(long number, const std::string& description, const std::string& source, const std::string& extra) {
  if (number == kMissingSubItem && source == "ListSubItems") return;
  const std::string text =
      "An error has occured\r\n" + std::to_string(number) + "\r\n" + description + "\r\n" + source + "\r\n" + extra;
  // A timer that fails at every tick must not pile up boxes.
  const OpenText onScreen(text);
  if (!onScreen.isNew()) return;
  notifyUser({{}, text, NoticeIcon::Critical});
}

void reportException(const std::exception& error, const std::string& source) {
  if (const auto* database = dynamic_cast<const DatabaseError*>(&error))
    reportError(database->number(), database->description(), database->source().empty() ? source : database->source(),
                "");
  else if (const auto* file = dynamic_cast<const FileError*>(&error))
    reportError(file->number(), file->what(), source, "");
  else
    reportError(0, error.what(), source, "");
}

}  // namespace mv
