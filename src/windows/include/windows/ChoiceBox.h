// A drop-down list whose value is chosen from the list only: with the mouse, the arrow keys, F4 and Alt+Down, not by
// typing, and not by the wheel of a mouse that happens to pass over it.
#pragma once

#include <QComboBox>

namespace mv {

class ChoiceBox : public QComboBox {
  Q_OBJECT
 public:
  explicit ChoiceBox(QWidget* parent = nullptr);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
};

}  // namespace mv
