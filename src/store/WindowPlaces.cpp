#include "store/WindowPlaces.h"

#include "app/Settings.h"

namespace mv {

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
  bool known = false;
  {
    // The recordset is gone before the table is written.
    const Recordset row = gDatabase.query("select id from win_pos where wname = " + quoted(name));
    known = !row.endOfRows();
  }
  if (known)
    gDatabase.execute("update win_pos set wtop=" + number(top) + ", wleft=" + number(left) +
                      ", wwidth=" + number(width) + ", wheight =" + number(height) + " where wname=" + quoted(name));
  else
    gDatabase.execute("insert into win_pos (wname, wtop, wleft, wwidth, wheight) values (" + quoted(name) + "," +
                      number(top) + "," + number(left) + "," + number(width) + "," + number(height) + ")");
}

void clearWindowPositions() { gDatabase.execute("delete from win_pos"); }

}  // namespace mv
