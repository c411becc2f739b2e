// What a folder or a file dialog is asked with.
#pragma once

#include <QString>

class QWidget;

namespace mv {

struct FolderRequest {
  QString title;
  QString prompt;
  QString statusText;
  QString initialFolder;  // selected at the start; a folder that does not exist: its nearest existing parent
  QWidget* owner = nullptr;
};

struct FileRequest {
  QString title;
  QString initialFolder;
  QString filter;  // "Pictures (*.png *.jpg)"
  QWidget* owner = nullptr;
};

}  // namespace mv
