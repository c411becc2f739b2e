#include "Links.h"

#include <algorithm>

#include "app/Settings.h"

namespace mvbench {

namespace {
constexpr std::int64_t kSliceRows = 200'000;
}

void storeHandledLinks(std::int32_t site, const std::string& host, std::int64_t rows) {
  for (const char* index : {"link_url", "link_site_type_status", "link_site_status_type"})
    mv::gDatabase.execute(std::string("drop index if exists ") + index);
  std::int64_t next =
      mv::gDatabase.query("select next_value from valid_sid where sid_name = 'link_id'").number("next_value");
  for (const std::int64_t end = next + rows; next < end; next += kSliceRows) {
    const std::int64_t last = std::min(next + kSliceRows, end) - 1;
    mv::gDatabase.execute(
        "insert into link (id, site_id, url, link_type, username, password, status, file_type) "
        "with recursive numbers(n) as (select " +
        std::to_string(next) + " union all select n + 1 from numbers where n < " + std::to_string(last) +
        ") select n, " + std::to_string(site) + ", printf('%s/pictures/%08x/image%d.jpg', " + mv::quoted(host) +
        ", n * 2654435761 % 4294967296, n), iif(n % 10 < 7, 'File', 'Document'), '', '', 'Done', 'jpg' from numbers");
    mv::gDatabase.execute("update valid_sid set next_value = " + std::to_string(last + 1) +
                          " where sid_name = 'link_id'");
  }
}

}  // namespace mvbench
