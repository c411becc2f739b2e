// A scan of a loopback site, unpaced, and what it left in the database.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "app/Settings.h"
#include "scan/ScanProcess.h"
#include "testkit/Fixture.h"
#include "testkit/TestSite.h"

namespace mvtest {

// `Base`: ProgramTest or WindowTest.
template <class Base>
class ScanTest : public Base {
 protected:
  ScanTest() : siteId(addSite(site.host(), this->folder(), {"jpg"})) { setTags({"<a href=", "<A HREF=", "<img src="}); }

  // In place of those that are shipped.
  static void setTags(const std::vector<std::string>& tags) {
    mv::gDatabase.execute("delete from valid_tag");
    for (const std::string& tag : tags) insert("valid_tag (tag)", {{tag}});
  }

  void prepare(mv::ScanProcess& process) {
    process.SiteID = siteId;
    process.SiteName = this->value("select name from site where id = " + std::to_string(siteId));
    process.Domain = site.host();
    process.tmrOKToDownload.setInterval(1);
  }
  void setSite(const std::string& assignments) { mvtest::setSite(siteId, assignments); }
  // What the user entered for a field of the site's login form.
  void addSiteField(int field, const std::string& text) {
    insert("site_field_xref (site_id, field_id, field_value)", {{std::to_string(siteId), std::to_string(field), text}});
  }
  // A link that waits in the database, as an earlier page left it.
  void addLink(int id, const std::string& url, const std::string& type = "Document",
               const std::string& status = "False") {
    insert("link (id, site_id, url, link_type, username, password, status, file_type)",
           {{std::to_string(id), std::to_string(siteId), url, type, "", "", status, ""}});
  }

  // Stored links as "address type status", the site's own host left out, sorted.
  std::vector<std::string> links() const {
    std::vector<std::string> result;
    for (mv::Recordset rows = mv::gDatabase.query("select url, link_type, status from link"); !rows.endOfRows();
         rows.moveNext()) {
      const std::string url = rows.text("url");
      result.push_back((url.starts_with(site.host()) ? url.substr(site.host().size()) : url) + " " +
                       rows.text("link_type") + " " + rows.text("status"));
    }
    std::sort(result.begin(), result.end());
    return result;
  }
  bool waitForStatus(const std::string& path, const std::string& status) {
    return waitFor(
        [&] { return this->count("link", "url = '" + site.host() + path + "' and status = '" + status + "'") == 1; });
  }
  static std::string anchors(const std::string& path, int from, int to, const std::string& end = ".htm") {
    std::string html;
    for (int i = from; i < to; ++i) html += "<a href=\"" + path + std::to_string(i) + end + "\">x</a>\n";
    return html;
  }

  TestSite site;
  mv::Id siteId;
};

}  // namespace mvtest
