#include "store/WindowPlaces.h"

#include "ReadAll.h"
#include "app/Settings.h"
#include "base/WebAddress.h"

namespace mv {

namespace {

// "Scan: name:password@host": the address stands behind the kind of window.
std::string shownTitle(const std::string& title) {
  constexpr std::string_view kKindEnd = ": ";
  const std::size_t end = title.find(kKindEnd);
  const std::size_t start = end == std::string::npos ? 0 : end + kKindEnd.size();
  return title.substr(0, start) + maskPassword(title.substr(start));
}

bool hasPosition(const std::string& name) {
  return !gDatabase.query("select id from win_pos where wname = " + quoted(name)).endOfRows();
}

}  // namespace

void readWindowPosition(const std::string& name, long& top, long& left, long& height, long& width) {
  const Recordset row =
      gDatabase.query("select id, wtop, wleft, wwidth, wheight from win_pos where wname = " + quoted(name));
  if (row.endOfRows()) return;
  top = static_cast<long>(row.number("wtop"));
  left = static_cast<long>(row.number("wleft"));
  height = static_cast<long>(row.number("wheight"));
  width = static_cast<long>(row.number("wwidth"));
}

void saveWindowPosition(const std::string& name, long top, long left, long height, long width) {
  if (hasPosition(name))
    gDatabase.execute("update win_pos set wtop=" + number(top) + ", wleft=" + number(left) +
                      ", wwidth=" + number(width) + ", wheight =" + number(height) + " where wname=" + quoted(name));
  else
    gDatabase.execute("insert into win_pos (wname, wtop, wleft, wwidth, wheight) values (" + quoted(name) + "," +
                      number(top) + "," + number(left) + "," + number(width) + "," + number(height) + ")");
}

void maskPasswordsOfWindowPositions() {
  const auto titles = readAll(gDatabase.query("select wname from win_pos where wname like \"%@%\""),
                              [](const Recordset& row) { return row.text("wname"); });
  for (const std::string& title : titles) {
    const std::string shown = shownTitle(title);
    if (shown == title) continue;
    if (hasPosition(shown))
      gDatabase.execute("delete from win_pos where wname = " + quoted(title));
    else
      gDatabase.execute("update win_pos set wname = " + quoted(shown) + " where wname = " + quoted(title));
  }
}

void clearWindowPositions() { gDatabase.execute("delete from win_pos"); }

}  // namespace mv
