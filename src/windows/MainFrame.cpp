#include "windows/MainFrame.h"

namespace mv {
namespace {

MainFrame* theFrame = nullptr;

}  // namespace

MainFrame::MainFrame() { theFrame = this; }

MainFrame::~MainFrame() {
  if (theFrame == this) theFrame = nullptr;
}

MainFrame* MainFrame::current() { return theFrame; }

void sayInFoot(const QString& line) {
  if (theFrame) theFrame->say(line);
}

}  // namespace mv
