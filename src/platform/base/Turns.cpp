#include "base/Turns.h"

#include <QCoreApplication>
#include <QPointer>
#include <deque>
#include <utility>

namespace mv {

namespace {

struct Turn {
  QPointer<QObject> owner;
  std::function<void()> piece;
};

std::deque<Turn>& waiting() {
  static std::deque<Turn> turns;
  return turns;
}

void serveNext();

void postNext() { QMetaObject::invokeMethod(QCoreApplication::instance(), serveNext, Qt::QueuedConnection); }

void serveNext() {
  if (waiting().empty()) return;
  const Turn turn = std::move(waiting().front());
  waiting().pop_front();
  // Before the piece, which may open a message box: the others have their turns meanwhile.
  if (!waiting().empty()) postNext();
  if (turn.owner) turn.piece();
}

}  // namespace

void takeTurn(QObject* owner, std::function<void()> piece) {
  waiting().push_back({owner, std::move(piece)});
  if (waiting().size() == 1) postNext();
}

}  // namespace mv
