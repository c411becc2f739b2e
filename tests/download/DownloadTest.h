// A download process on a loopback site, and what became of each of its files.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "app/Settings.h"
#include "download/DownloadProcess.h"
#include "download/DownloadTexts.h"
#include "testkit/Fixture.h"
#include "testkit/TestSite.h"

namespace mvtest {

struct Outcome {
  std::string state;
  std::string label;
  std::string size;
};

// While it lives: large bodies stay in memory and are saved from there, slice by slice.
struct BodiesInMemory {
  BodiesInMemory() { mv::InternetTransfer::limits().spoolThreshold = std::size_t{128} << 20; }
  ~BodiesInMemory() { mv::InternetTransfer::limits() = {}; }
};

// `Base`: ProgramTest or WindowTest.
template <class Base>
class DownloadTest : public Base {
 protected:
  DownloadTest() : saveFolder(this->folder() + "/saved") {
    siteId = addSite(site.host(), saveFolder);
    mv::gOverwriteExisting = "no";
  }

  // A link of the site waiting to be downloaded; returns its id.
  int addLink(const std::string& address, const std::string& type) {
    insert("link (id, site_id, url, link_type, username, password, status, file_type)",
           {{std::to_string(++lastLink), std::to_string(siteId), address, "File", "", "", "False", type}});
    return lastLink;
  }
  // The same, and the file itself.
  int addFile(const std::string& path, const std::string& body, const std::string& type = "jpg") {
    site.file(path, "application/octet-stream", body);
    return addLink(site.host() + path, type);
  }

  void prepare(mv::DownloadProcess& process) {
    process.SiteId = siteId;
    process.SiteName = site.host();
    process.UniqueNames = "no";
    process.BaseName = "NewFile";
    process.tmrOKToDownload.setInterval(1);
    QObject::connect(&process.lvwLinks, &QAbstractItemModel::dataChanged, &process,
                     [this, &process](QModelIndex index) {
                       const mv::WorkRow& row = process.lvwLinks.row(index.row());
                       outcomes[row.fileName] = {mv::stateText(row.state), mv::fileText(process.status()),
                                                 mv::sizeText(process.status())};
                     });
  }
  bool allDone() { return this->count("link", "status <> \"Done\"") == 0; }

  std::string path(const std::string& name) const { return saveFolder + "/" + name; }
  void write(const std::string& name, const std::string& content) const {
    std::filesystem::create_directories(saveFolder);
    std::ofstream(path(name)) << content;
  }
  // Names of all files below the program folder's "saved", hidden ones too.
  std::vector<std::string> savedFiles() const {
    std::vector<std::string> names;
    if (!std::filesystem::exists(saveFolder)) return names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(saveFolder))
      if (!entry.is_directory()) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }
  void setSite(const std::string& assignments) { mvtest::setSite(siteId, assignments); }

  TestSite site;
  std::string saveFolder;
  mv::Id siteId = 0;
  int lastLink = 100;
  std::map<std::string, Outcome> outcomes;  // by file name, as last shown
};

}  // namespace mvtest
