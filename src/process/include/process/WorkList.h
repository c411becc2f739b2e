// The work list of a scan or download process: the rows shown in `lvwLinks`, as a table model without widgets.
// Ten thousand rows are not felt: the next waiting row, a row by link id and the test for an address take constant
// time.
#pragma once

#include <QStringList>
#include <cstdint>
#include <deque>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <variant>
#include <vector>

#include "base/TextTable.h"
#include "store/EscapedAddress.h"

namespace mv {

enum class RowState { Waiting, Working, Done, Exists, Error };
// "False", "Working", "Done", "Exists", "Error".
const char* stateText(RowState state);

// Plain, or as the table `link` keeps it.
using RowAddress = std::variant<std::string, EscapedAddress>;
// As the list shows it, but for the password, which is masked there.
const std::string& listedText(const RowAddress& address);
// As it is asked for.
std::string plainAddress(const RowAddress& address);

struct WorkRow {
  RowState state = RowState::Waiting;
  std::int64_t linkId = 0;
  RowAddress url;
  std::string userName;
  std::string password;
  std::string fileName;
  std::string fileType;
  std::string savedPath = {};  // of the file that it became, or that was there already; "" without one
  bool tagged = true;          // counts for holdsAddress
};

class WorkList : public TextTable {
  Q_OBJECT
 public:
  // Column titles, the state first, then in order: id, address, user name, password, file name, file type; a shorter
  // list shows the first ones.
  explicit WorkList(const QStringList& titles, QObject* parent = nullptr);

  void append(WorkRow row);
  void append(std::vector<WorkRow> rows);
  void clear();

  int count() const { return static_cast<int>(rows_.size()); }
  const WorkRow& row(int index) const { return rows_[static_cast<std::size_t>(index)]; }
  void setState(int index, RowState state);
  void setSavedPath(int index, const std::string& path) { rows_[static_cast<std::size_t>(index)].savedPath = path; }
  // Rows whose state is Waiting.
  int waitingCount() const { return waitingCount_; }

  // First row in list order whose state is Waiting, -1 when none.
  int nextWaiting() const;
  // First row in list order with that link id, -1 when none.
  int findLink(std::int64_t linkId) const;
  // Does a tagged row bear exactly this address, as listed?
  bool holdsAddress(const std::string& url) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 protected:
  QString cellText(int index, int column) const override;
  void reorder(const std::vector<int>& rows) override;

 private:
  void add(WorkRow row);

  std::deque<WorkRow> rows_;  // grows without moving those that it has
  std::unordered_map<std::int64_t, int> byLink_;
  std::unordered_set<std::string> addresses_;
  int waitingCount_ = 0;
  mutable int waitingCursor_ = 0;  // no row before it is waiting
};

}  // namespace mv
