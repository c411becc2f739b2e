#include "store/Sequence.h"

#include <functional>
#include <map>
#include <string>

#include "app/ReportError.h"
#include "app/Settings.h"

namespace mv {

namespace {

Id readNext(std::string_view sidName) {
  return gDatabase.query("select next_value from valid_sid where sid_name = " + quoted(sidName)).number("next_value");
}

void storeNext(std::string_view sidName, Id value) {
  gDatabase.execute("update valid_sid set next_value = " + number(value) + " where sid_name = " + quoted(sidName));
}

// The sequences that the open commit group has drawn from, with their next values: a thousand links of a slice read and
// store theirs once.
class GroupSequences {
 public:
  Id draw(std::string_view sidName) {
    if (group_ != gDatabase.openGroup()) next_.clear();
    group_ = gDatabase.openGroup();
    auto found = next_.find(sidName);
    if (found == next_.end()) found = add(std::string(sidName));
    return found->second++;
  }

 private:
  using Values = std::map<std::string, Id, std::less<>>;

  Values::iterator add(const std::string& sidName) {
    const auto added = next_.emplace(sidName, readNext(sidName)).first;
    gDatabase.beforeCommit([added] { storeNext(added->first, added->second); });
    return added;
  }

  std::int64_t group_ = 0;
  Values next_;
};

}  // namespace

Id drawSequenceValue(std::string_view sidName) {
  static GroupSequences ofGroup;
  if (gDatabase.openGroup() != 0) return ofGroup.draw(sidName);
  const Id value = readNext(sidName);
  storeNext(sidName, value + 1);
  return value;
}

Id nextSequenceValue(std::string_view sidName) {
  Id result = 0;
  guarded("nextSequenceValue", [&] { result = drawSequenceValue(sidName); });
  return result;
}

}  // namespace mv
