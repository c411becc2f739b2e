#include "Links.h"

#include <algorithm>

#include "app/Settings.h"

namespace mvbench {

namespace {
constexpr std::int64_t kSliceRows = 200'000;
}

void storeHandledLinks(mv::Id site, const std::string& host, std::int64_t rows) {
  for (const mv::SqlText index :
       {mv::SqlText("link_url"), mv::SqlText("link_site_type_status"), mv::SqlText("link_site_status_type")})
    mv::gDatabase.execute("drop index if exists " + index);
  std::int64_t next =
      mv::gDatabase.query("select next_value from valid_sid where sid_name = 'link_id'").number("next_value");
  for (const std::int64_t end = next + rows; next < end; next += kSliceRows) {
    const std::int64_t last = std::min(next + kSliceRows, end) - 1;
    mv::gDatabase.execute(
        "insert into link (id, site_id, url, link_type, username, password, status, file_type) "
        "with recursive numbers(n) as (select " +
        mv::number(next) + " union all select n + 1 from numbers where n < " + mv::number(last) + ") select n, " +
        mv::number(site) + ", printf('%s/pictures/%08x/image%d.jpg', " + mv::quoted(host) +
        ", n * 2654435761 % 4294967296, n), iif(n % 10 < 7, 'File', 'Document'), '', '', 'Done', 'jpg' from numbers");
    mv::gDatabase.execute("update valid_sid set next_value = " + mv::number(last + 1) + " where sid_name = 'link_id'");
  }
}

}  // namespace mvbench
