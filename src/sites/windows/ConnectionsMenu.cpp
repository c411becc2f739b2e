#include "ConnectionsMenu.h"

#include <QKeyEvent>
#include <QMenu>
#include <QRegularExpression>
#include <QToolButton>
#include <algorithm>
#include <cmath>

#include "desktop/Dialogs.h"

namespace mv {

namespace {

constexpr long kMostConnections = 1000;
constexpr long kMenuConnections = 5;

class OpensByDown : public QObject {
 public:
  explicit OpensByDown(QToolButton& button) : QObject(&button), button_(button) { button.installEventFilter(this); }

  bool eventFilter(QObject* watched, QEvent* event) override {
    const bool key = event->type() == QEvent::KeyPress;
    if (!key || static_cast<QKeyEvent*>(event)->key() != Qt::Key_Down) return QObject::eventFilter(watched, event);
    button_.showMenu();
    return true;
  }

 private:
  QToolButton& button_;
};

// The number that an answer begins with, as a whole number of connections; 1 when there is none or it is less.
long connectionsOf(const QString& answer) {
  static const QRegularExpression kLeadingNumber(R"(^\s*[+-]?(\d+\.?\d*|\.\d+))");
  const double number = kLeadingNumber.match(answer).captured().trimmed().toDouble();
  return std::lround(std::clamp(number, 1.0, static_cast<double>(kMostConnections)));
}

}  // namespace

void offerConnections(QToolButton& button, const std::function<void(long)>& set, const std::function<void()>& ask) {
  auto* menu = new QMenu(&button);
  for (long count = 1; count <= kMenuConnections; ++count)
    menu->addAction(QString(count == 1 ? "%1 Connection" : "%1 Connections").arg(count), &button,
                    [set, count] { set(count); });
  menu->addAction("Other...", &button, ask);
  button.setMenu(menu);
  button.setPopupMode(QToolButton::MenuButtonPopup);
  new OpensByDown(button);
}

long askForConnections(QWidget* owner, long current) {
  const auto answer =
      askText(owner, "Set Number of Connections", "Enter the number of connections.", QString::number(current));
  return connectionsOf(answer.value_or(QString()));
}

void tellOneConnection(QWidget* owner) {
  showMessage(owner, applicationTitle(),
              "Connections set to 1\r\n\r\nUse drop down to increase the number of\r\nsimultaneuous connections.",
              MessageIcon::None);
}

}  // namespace mv
