#include "scan/clsLinkParser.h"

#include <string_view>

#include "app/ReportError.h"
#include "app/Settings.h"
#include "base/Text.h"
#include "database/Database.h"
#include "net/Address.h"
#include "store/EscapeText.h"
#include "store/Sequence.h"

namespace mv {

namespace {

constexpr const char* kDocument = "Document";
constexpr const char* kDirectory = "Directory";
constexpr const char* kFile = "File";
constexpr const char* kEmailAddress = "Email Address";
constexpr std::string_view kMailTo = "mailto:";

// Start of the addresses of a music-download service, whose links do not end with their type. The name is a reserved
// one: a build for users of such a service puts its address here.
constexpr std::string_view kMusicService = "http://music.invalid/d";
static_assert(kMusicService.size() == 22);

constexpr std::size_t kLongestExtension = 4;

// Text behind the last "."; "" when there is none or when it is too long for a type.
std::string extensionOf(std::string_view url) {
  const std::size_t dot = url.rfind('.');
  if (dot == std::string_view::npos) return {};
  std::string_view extension = url.substr(dot + 1);
  if (characterCount(extension) > kLongestExtension) return {};
  if (extension.ends_with('"')) extension.remove_suffix(1);
  return std::string(extension);
}

// `path` up to the "/" before its last one; "" when there is no such.
void dropOneLevel(std::string& path) {
  const std::size_t last = path.rfind('/');
  if (last == std::string::npos) return;
  const std::size_t earlier = last == 0 ? std::string::npos : path.rfind('/', last - 1);
  path.resize(earlier == std::string::npos ? 0 : earlier + 1);
}

}  // namespace

void clsLinkParser::BuildFilters() {
  globalRules_ = RuleSet(loadGlobalRules());
  siteRules_ = RuleSet(loadSiteRules(SiteID));
}

void clsLinkParser::beginStretch() {
  inStretch_ = true;
  knownLinks_.refresh();
}

void clsLinkParser::endStretch() {
  inStretch_ = false;
  fileTypes_.clear();
}

void clsLinkParser::InitializeDomainHopper() { hopDomains_.clear(); }

void clsLinkParser::ProcessLink() {
  if (Link.starts_with('/')) {
    URL = Domain + Link;
  } else if (Link.starts_with("./") || Link.starts_with("../")) {
    const std::string_view rest = normalizeRelativeLink();
    URL = BasePath;
    if (!URL.ends_with('/')) URL += '/';
    URL += rest;
  } else {
    URL = Link;
  }
}

std::string_view clsLinkParser::normalizeRelativeLink() {
  std::string_view rest = Link;  // Link itself stays as found, filters look at it
  while (true) {
    if (rest.starts_with("./")) {
      rest.remove_prefix(2);
    } else if (rest.starts_with("../") || rest.starts_with("..\\")) {
      rest.remove_prefix(3);
      dropOneLevel(BasePath);
    } else {
      return rest;
    }
  }
}

void clsLinkParser::AddLinkToDatabase() {
  Flag = false;
  classify();
  if (!typeIsWanted() || !passesFilters() || !passesDomainHopper() || URL.starts_with(kMailTo)) return;
  URL = std::string(withoutScheme(escaped(std::move(URL))));
  insertUnlessKnown();
}

void clsLinkParser::classify() {
  LinkType.clear();
  fileType_.clear();
  if (URL.ends_with("htm") || URL.ends_with("html") || URL.ends_with("shtml")) LinkType = kDocument;
  if (URL.ends_with('/')) LinkType = kDirectory;
  if (URL.starts_with(kMailTo)) LinkType = kEmailAddress;
  if (LinkType.empty()) {
    LinkType = kFile;
    fileType_ = extensionOf(URL);
  }
  if (URL.starts_with(kMusicService)) {
    LinkType = kFile;
    fileType_ = URL.ends_with(".ram") ? "ram" : "mp3";
  }
  storedType_ = LinkType;
}

bool clsLinkParser::typeIsWanted() {
  if (storedType_ != kFile) return true;
  const FileType type = fileType();
  if (type == FileType::Unknown) {
    storedType_ = kDocument;
    fileType_.clear();
  }
  return type != FileType::NotOfTheSite;
}

clsLinkParser::FileType clsLinkParser::fileType() {
  if (!inStretch_) return readFileType();
  const auto known = fileTypes_.find(fileType_);
  return known != fileTypes_.end() ? known->second : fileTypes_.emplace(fileType_, readFileType()).first->second;
}

clsLinkParser::FileType clsLinkParser::readFileType() const {
  const std::string named = " from valid_filetypes where name = " + quoted(fileType_);
  if (gDatabase.count("select count(*) as outCount" + named) == 0) return FileType::Unknown;
  const Recordset type = gDatabase.query("select id" + named);
  const bool ofTheSite =
      type.endOfRows() ||
      gDatabase.count("select count(*) as outCount from site_filetype_xref where site_id = " + std::to_string(SiteID) +
                      " and file_type_id = " + std::to_string(type.number("id"))) > 0;
  return ofTheSite ? FileType::OfTheSite : FileType::NotOfTheSite;
}

void clsLinkParser::applyGlobalFilters() {
  if (globalRules_.anyMatches({Link, Domain, fileType_})) Flag = true;
}

void clsLinkParser::applySiteFilters() {
  if (siteRules_.anyMatches({Link, Domain, fileType_})) Flag = true;
}

bool clsLinkParser::passesFilters() {
  applyGlobalFilters();
  if (!Flag) applySiteFilters();
  const bool passes = !Flag;
  Flag = false;
  return passes;
}

std::string clsLinkParser::extractLinkDomain() const {
  const std::string_view rest = withoutScheme(URL);
  const std::string_view address = rest.empty() ? std::string_view(URL) : rest;
  return std::string(address.substr(0, address.find('/')));
}

void clsLinkParser::checkDomainHop(const std::string& linkDomain) {
  Flag = false;
  if (hopDomains_.contains(linkDomain)) return;
  if (static_cast<long>(hopDomains_.size()) < DomainHops)
    hopDomains_.insert(linkDomain);
  else
    Flag = true;
}

bool clsLinkParser::passesDomainHopper() {
  const std::string linkDomain = extractLinkDomain();
  if (linkDomain == Domain) return true;
  if (DomainHops == 0) return false;
  if (DomainHops < 0 || linkDomain.starts_with(kMailTo)) return true;
  checkDomainHop(linkDomain);
  const bool passes = !Flag;
  Flag = false;
  return passes;
}

void clsLinkParser::insertUnlessKnown() {
  if (inStretch_ && knownLinks_.contains(URL)) return;
  const std::string url = quoted(URL);
  if (gDatabase.count("select count(*) as outCount from link where url = " + url) != 0) {
    if (inStretch_) knownLinks_.add(URL);
    return;
  }
  LinkID = 0;
  try {
    Transaction idAndRow(gDatabase);
    LinkID = drawSequenceValue("link_id");
    if (LinkID != 0) insertRow(url, idAndRow);
  } catch (const std::exception& error) {
    if (LinkID != 0) throw;
    reportException(error, "nextSequenceValue");
  }
  if (LinkID == 0) throw NoLinkId();
  if (inStretch_) knownLinks_.add(URL);
  Flag = true;
}

void clsLinkParser::insertRow(const std::string& url, Transaction& idAndRow) {
  try {
    gDatabase.execute("insert into link (site_id,url,link_type,username,password,id,status,file_type) values (" +
                      std::to_string(SiteID) + ", " + url + ", " + quoted(storedType_) + ", " + quoted(UserName) +
                      ", " + quoted(Password) + ", " + std::to_string(LinkID) + ", " + quoted("False") + ", " +
                      quoted(fileType_) + ")");
  } catch (const DatabaseError&) {
    // An id that is refused must not be drawn again.
    idAndRow.commit();
    throw;
  }
  idAndRow.commit();
}

}  // namespace mv
