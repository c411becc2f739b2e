#include "windows/ListPair.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "windows/ListHelpers.h"

namespace mv {

namespace {

constexpr int kMinimumListHeight = 96;  // logical pixels: header and a few rows
constexpr int kMinimumListWidth = 120;
constexpr int kNameCharacters = 12;

}  // namespace

ListPair::ListPair(const Texts& texts, const std::vector<const char*>& assignedHidden)
    : rows_(new QVBoxLayout(this)),
      available_(makeList(texts.available, texts.column, {"ID"})),
      toAssigned_(makeButton(texts.toAssigned, ">")),
      toAvailable_(makeButton(texts.toAvailable, "<")),
      create_(makeButton(texts.create, texts.createCaption)) {
  std::vector<const char*> hidden{"ID"};
  hidden.insert(hidden.end(), assignedHidden.begin(), assignedHidden.end());
  assigned_ = makeList(texts.assigned, texts.column, hidden);

  auto* buttons = new QVBoxLayout;
  buttons->addStretch();
  for (QPushButton* button : {toAssigned_, toAvailable_, create_}) buttons->addWidget(button);
  buttons->addStretch();

  auto* lists = new QHBoxLayout;
  lists->addWidget(titled(texts.available, available_), 1);
  lists->addLayout(buttons);
  lists->addWidget(titled(texts.assigned, assigned_), 1);

  rows_->setContentsMargins(0, 0, 0, 0);
  rows_->addLayout(lists, 1);
  connectAll();
}

ListView* ListPair::makeList(const ListTexts& texts, const char* column, const std::vector<const char*>& hidden) {
  auto* list = new ListView(this);
  list->setObjectName(texts.name);
  list->setToolTip(texts.toolTip);
  std::vector<ListColumn> columns{{column, kNameCharacters, false}};
  for (const char* title : hidden) columns.push_back({title, 0, true});
  list->setColumns(columns);
  list->setMultiSelect(true);
  list->setHeaderClickSorts(false);
  list->setMinimumSize(kMinimumListWidth, kMinimumListHeight);
  return list;
}

QPushButton* ListPair::makeButton(const ButtonTexts& texts, const QString& caption) {
  auto* button = new QPushButton(caption, this);
  button->setObjectName(texts.name);
  button->setToolTip(texts.toolTip);
  button->setAccessibleName(texts.toolTip);
  button->setAutoDefault(false);
  return button;
}

QWidget* ListPair::titled(const ListTexts& texts, ListView* list) {
  auto* box = new QWidget(this);
  auto* label = new QLabel(texts.title, box);
  label->setObjectName(texts.labelName);
  label->setBuddy(list);
  list->setAccessibleName(texts.title);
  auto* layout = new QVBoxLayout(box);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(label);
  layout->addWidget(list, 1);
  return box;
}

void ListPair::connectAll() {
  connect(available_, &ListView::entered, this, [this] { allowMove(true); });
  connect(available_, &ListView::rowChosen, this, [this] { allowMove(true); });
  connect(assigned_, &ListView::entered, this, [this] { allowMove(false); });
  connect(assigned_, &ListView::rowChosen, this, [this] { allowMove(false); });
  connect(toAssigned_, &QPushButton::clicked, this, [this] {
    moveToAssigned();
    Q_EMIT moved();
  });
  connect(toAvailable_, &QPushButton::clicked, this, [this] {
    moveToAvailable();
    Q_EMIT moved();
  });
  toAssigned_->setShortcut(Qt::ALT | Qt::Key_Right);
  toAvailable_->setShortcut(Qt::ALT | Qt::Key_Left);
  // A button that is disabled takes no click.
  connect(available_, &QTreeWidget::itemDoubleClicked, toAssigned_, &QPushButton::click);
  connect(assigned_, &QTreeWidget::itemDoubleClicked, toAvailable_, &QPushButton::click);
  connect(create_, &QPushButton::clicked, this, &ListPair::newWanted);
}

void ListPair::allowMove(bool toAssigned) {
  toAssigned_->setEnabled(toAssigned);
  toAvailable_->setEnabled(!toAssigned);
}

void ListPair::disableMoves() {
  toAssigned_->setEnabled(false);
  toAvailable_->setEnabled(false);
}

std::vector<std::int64_t> ListPair::assignedIds() const {
  std::vector<std::int64_t> ids;
  ids.reserve(static_cast<std::size_t>(assigned_->rowCount()));
  for (int row = 0; row < assigned_->rowCount(); ++row) ids.push_back(assigned_->cell(row, kIdColumn).toLongLong());
  return ids;
}

void ListPair::moveToAssigned() { moveSelectedItems(*available_, *assigned_); }
void ListPair::moveToAvailable() { moveSelectedItems(*assigned_, *available_); }

}  // namespace mv
