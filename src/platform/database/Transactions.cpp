#include <QScopeGuard>
#include <utility>

#include "Sqlite.h"
#include "database/Database.h"

namespace mv {

using namespace engine;

namespace {

constexpr char kBegin[] = "begin immediate";
constexpr char kCommit[] = "commit";
constexpr char kRollback[] = "rollback";

// How long a commit group waits for another program. Long enough for the moments for which the engine's own
// connections take the right to write.
constexpr int kGroupPatienceMs = 2;

[[noreturn]] void raiseTakenBack() {
  throw DatabaseError(DatabaseError::kDiskError, "The changes were taken back after a failure.");
}

}  // namespace

std::int64_t Database::openGroup() const { return group_ ? group_->number_ : 0; }

void Database::beforeCommit(std::function<void()> work) { group_->beforeCommit_.push_back(std::move(work)); }

// A statement behind a failure that had the engine end the transaction would be a transaction of its own: half of what
// belongs together.
void Database::join() {
  if (group_)
    group_->join();
  else if (transaction_ && !isInTransaction())
    raiseTakenBack();
}

CommitGroup::CommitGroup(Database& database) : database_(database), number_(++database.groups_) {
  database_.group_ = this;
}

CommitGroup::~CommitGroup() {
  database_.group_ = nullptr;
  if (!begun_ || isLost()) return;
  try {
    database_.carryOut(kRollback);
  } catch (const DatabaseError&) {
    // The engine has done so already.
  }
}

// The engine has ended the transaction by itself, or the database was closed.
bool CommitGroup::isLost() const { return !database_.isInTransaction(); }

void CommitGroup::join() {
  if (!database_.connection_) raiseNotOpen();
  if (!begun_) {
    database_.waitForLocks(kGroupPatienceMs);
    const auto patience = qScopeGuard([this] { database_.waitForLocks(kBusyTimeoutMs); });
    database_.carryOut(kBegin);
    begun_ = true;
  } else if (isLost()) {
    raiseTakenBack();
  }
}

bool CommitGroup::commit() {
  for (const auto& work : beforeCommit_) work();
  beforeCommit_.clear();
  if (!begun_) return false;
  join();
  database_.carryOut(kCommit);
  begun_ = false;
  return true;
}

// The right to write is taken first: the engine waits for it only as long as nothing has been read. Its other
// connections hold it for a moment now and then, even if they only read.
Transaction::Transaction(Database& database) : database_(database) {
  if (database_.group_) {
    database_.join();
  } else {
    database_.execute(kBegin);
    database_.transaction_ = this;
  }
}

Transaction::~Transaction() {
  if (!open_) return;
  if (database_.transaction_ == this) database_.transaction_ = nullptr;
  try {
    database_.execute(kRollback);
  } catch (const DatabaseError&) {
    // After some failures, a full disk above all, the engine has done so already.
  }
}

void Transaction::commit() {
  if (!database_.group_) database_.execute(kCommit);
  if (database_.transaction_ == this) database_.transaction_ = nullptr;
  open_ = false;
}

}  // namespace mv
