#include "windows/NoticeBoxes.h"

#include "app/UserNotice.h"
#include "base/Text.h"
#include "desktop/Dialogs.h"
#include "windows/MainFrame.h"

namespace mv {

namespace {

MessageIcon iconOf(NoticeIcon icon) {
  switch (icon) {
    case NoticeIcon::None:
      return MessageIcon::None;
    case NoticeIcon::Information:
      return MessageIcon::Information;
    case NoticeIcon::Exclamation:
      return MessageIcon::Exclamation;
    case NoticeIcon::Critical:
      return MessageIcon::Critical;
  }
  return MessageIcon::None;
}

void showInBox(const UserNotice& notice) {
  MainFrame* frame = MainFrame::current();
  if (frame && notice.icon == NoticeIcon::Critical) frame->hideStatusIndicators();
  showMessage(frame ? frame->window() : nullptr, notice.title.empty() ? applicationTitle() : toQString(notice.title),
              toQString(notice.text), iconOf(notice.icon));
}

}  // namespace

void showNoticesInBoxes() { setNoticeHandler(showInBox); }

}  // namespace mv
