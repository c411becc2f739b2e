#include "store/Sequence.h"

#include "app/ReportError.h"
#include "app/Settings.h"

namespace mv {

Id drawSequenceValue(std::string_view sidName) {
  const Statement where = " where sid_name = " + quoted(sidName);
  const auto value = gDatabase.query("select next_value from valid_sid" + where).number("next_value");
  gDatabase.execute("update valid_sid set next_value = " + number(value + 1) + where);
  return value;
}

Id nextSequenceValue(std::string_view sidName) {
  Id result = 0;
  guarded("nextSequenceValue", [&] { result = drawSequenceValue(sidName); });
  return result;
}

}  // namespace mv
