// What the parts of the program that know no window have to tell the user. Whoever has windows installs a handler that
// shows it; without one a notice goes to the standard error stream.
#pragma once

#include <functional>
#include <string>

namespace mv {

enum class NoticeIcon { None, Information, Exclamation, Critical };

// Texts are UTF-8, lines end with CR LF.
struct UserNotice {
  std::string title;  // "" stands for the program's name
  std::string text;
  NoticeIcon icon = NoticeIcon::None;
};

// Returns when the user has seen it; a handler may run events meanwhile.
void notifyUser(const UserNotice& notice);
// An empty function takes the handler away.
void setNoticeHandler(std::function<void(const UserNotice&)> handler);

}  // namespace mv
