// The panel of the main window in which an online check says what it is doing: a picture and a line of text. Hidden
// while there is nothing to say.
#pragma once

#include <QFrame>
#include <string>

class QLabel;

namespace mv {

class ElidedLabel;

class UpdatePanel : public QFrame {
  Q_OBJECT
 public:
  // `picture` is the name of a tool icon. The label is found under `labelName`.
  UpdatePanel(const QString& name, const QString& labelName, const QString& picture, QWidget* parent);

  // Shows the panel with `line`, of any length.
  void say(const std::string& line);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void drawPicture();

  QString picture_;
  QLabel* icon_;
  ElidedLabel* label_;
};

}  // namespace mv
