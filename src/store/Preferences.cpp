#include "store/Preferences.h"

#include "ReadAll.h"
#include "app/Settings.h"

namespace mv {

void loadPreferences() {
  for (std::string* setting : {&gAutoScan, &gHideProcesses, &gAutoUpdate, &gHelpServer, &gOverwriteExisting})
    setting->clear();
  gQuitTime = 0;

  const Recordset row = gDatabase.query(
      "select auto_scan, quit_time, hide_processes, auto_update, help_server, overwrite_existing from pref");
  gAutoScan = row.text("auto_scan");
  gQuitTime = static_cast<std::int16_t>(row.number("quit_time"));
  gHideProcesses = row.text("hide_processes");
  gAutoUpdate = row.text("auto_update");
  gHelpServer = row.text("help_server");
  gOverwriteExisting = row.text("overwrite_existing");
}

std::optional<Preferences> readPreferences() {
  const Recordset row = gDatabase.query(
      "select auto_scan, quit_time, max_connections, hide_processes, auto_update, help_server, overwrite_existing from "
      "pref");
  if (row.endOfRows()) return std::nullopt;
  Preferences preferences;
  preferences.autoScan = isYes(row.text("auto_scan"));
  preferences.quitTime = row.number("quit_time");
  preferences.maxConnections = row.number("max_connections");
  preferences.hideProcesses = isYes(row.text("hide_processes"));
  preferences.autoUpdate = isYes(row.text("auto_update"));
  preferences.helpServer = isYes(row.text("help_server"));
  preferences.overwriteExisting = isYes(row.text("overwrite_existing"));
  return preferences;
}

void savePreferences(Preferences preferences) {
  Transaction row(gDatabase);
  // The web-site list may have stored another number meanwhile.
  preferences.maxConnections = readMaxConnections().value_or(preferences.maxConnections);
  gDatabase.execute("delete from pref");
  gDatabase.execute(
      "insert into pref (auto_scan, quit_time, max_connections, hide_processes, auto_update, help_server, "
      "overwrite_existing) values (" +
      quoted(yesNo(preferences.autoScan)) + ", " + number(preferences.quitTime) + ", " +
      number(preferences.maxConnections) + ", " + quoted(yesNo(preferences.hideProcesses)) + ", " +
      quoted(yesNo(preferences.autoUpdate)) + ", " + quoted(yesNo(preferences.helpServer)) + ", " +
      quoted(yesNo(preferences.overwriteExisting)) + ")");
  row.commit();
  gHideProcesses = yesNo(preferences.hideProcesses);
  gOverwriteExisting = yesNo(preferences.overwriteExisting);
}

std::optional<std::int64_t> readMaxConnections() {
  return readFirst(gDatabase.query("select max_connections from pref"),
                   [](const Recordset& row) { return row.number("max_connections"); });
}

void setMaxConnections(std::int64_t connections) {
  gDatabase.execute("update pref set max_connections = " + number(connections));
}

}  // namespace mv
