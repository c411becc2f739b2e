#include "scan/clsLinkParser.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "base/Text.h"
#include "net/Address.h"
#include "transfer/HttpsHosts.h"
#include "transfer/RequestAddress.h"

namespace mv {

namespace {

constexpr std::string_view kMailTo = "mailto:";
constexpr std::string_view kHttps = "https://";

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

void clsLinkParser::cacheLookups() {
  lookupsCached_ = true;
  knownLinks_.refresh();
  newHops_.clear();
  roomBefore_ = Room;
  keptOutBefore_ = linksKeptOut_;
}

void clsLinkParser::forgetLookups() {
  lookupsCached_ = false;
  fileTypes_.clear();
}

void clsLinkParser::takeBack() {
  for (const std::string& domain : newHops_) hopDomains_.erase(domain);
  newHops_.clear();
  Room = roomBefore_;
  linksKeptOut_ = keptOutBefore_;
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

// Filters look at the link as found, everything else at its URL. A link behind a tag with a star is its URL.
std::string clsLinkParser::spelling() const { return Link == URL ? URL : URL + '\n' + Link; }

bool clsLinkParser::isKnown() {
  if (!lookupsCached_) return false;
  return Link == URL ? knownLinks_.contains(URL) : knownLinks_.contains(spelling());
}

void clsLinkParser::AddLinkToDatabase() {
  Flag = false;
  classify();
  if (!typeIsWanted() || !passesFilters() || !passesDomainHopper() || URL.starts_with(kMailTo)) return;
  rememberHttpsHost();
  std::string spelt = lookupsCached_ ? spelling() : std::string();
  link_.url = EscapedAddress::escape(std::string(withoutScheme(URL)));
  URL = link_.url.text();
  const bool isStored = isLinkStored(link_.url) || insert();
  if (isStored && lookupsCached_) knownLinks_.add(std::move(spelt));
}

void clsLinkParser::classify() {
  LinkType.clear();
  link_.fileType.clear();
  if (URL.ends_with("htm") || URL.ends_with("html") || URL.ends_with("shtml")) LinkType = kDocumentLink;
  if (URL.ends_with('/')) LinkType = kDirectoryLink;
  if (URL.starts_with(kMailTo)) LinkType = kEmailLink;
  if (LinkType.empty()) {
    LinkType = kFileLink;
    link_.fileType = extensionOf(URL);
  }
  if (URL.starts_with(kMusicService)) {
    LinkType = kFileLink;
    link_.fileType = URL.ends_with(".ram") ? "ram" : "mp3";
  }
  link_.linkType = LinkType;
}

bool clsLinkParser::typeIsWanted() {
  if (link_.linkType != kFileLink) return true;
  const FileTypeUse use = fileTypeUse();
  if (use == FileTypeUse::Unknown) {
    link_.linkType = kDocumentLink;
    link_.fileType.clear();
  }
  return use != FileTypeUse::NotOfTheSite;
}

FileTypeUse clsLinkParser::fileTypeUse() {
  if (!lookupsCached_) return loadFileTypeUse(SiteID, link_.fileType);
  const auto known = fileTypes_.find(link_.fileType);
  if (known != fileTypes_.end()) return known->second;
  return fileTypes_.emplace(link_.fileType, loadFileTypeUse(SiteID, link_.fileType)).first->second;
}

void clsLinkParser::applyGlobalFilters() {
  if (globalRules_.anyMatches({Link, Domain, link_.fileType})) Flag = true;
}

void clsLinkParser::applySiteFilters() {
  if (siteRules_.anyMatches({Link, Domain, link_.fileType})) Flag = true;
}

bool clsLinkParser::passesFilters() {
  applyGlobalFilters();
  if (!Flag) applySiteFilters();
  const bool passes = !Flag;
  if (!passes) ++linksKeptOut_;
  Flag = false;
  return passes;
}

std::string clsLinkParser::extractLinkDomain() const {
  const std::string_view rest = withoutScheme(URL);
  const std::string_view address = rest.empty() ? std::string_view(URL) : rest;
  return std::string(address.substr(0, address.find('/')));
}

// `host`: of the link, comparable.
bool clsLinkParser::isOwnHost(const std::string& host) {
  if (domainOfHost_ != Domain) {
    domainOfHost_ = Domain;
    ownHost_ = hostOf(Domain);
  }
  return !host.empty() && (host == answeringHost_ || host == ownHost_);
}

void clsLinkParser::checkDomainHop(const std::string& linkDomain) {
  Flag = false;
  if (hopDomains_.contains(linkDomain)) return;
  Flag = static_cast<long>(hopDomains_.size()) >= DomainHops;
  // An empty domain is equal to a free slot, and leaves it free.
  if (Flag || linkDomain.empty()) return;
  hopDomains_.insert(linkDomain);
  newHops_.push_back(linkDomain);
}

bool clsLinkParser::passesDomainHopper() {
  const std::string linkDomain = extractLinkDomain();
  if (linkDomain == Domain) return true;  // as most are written
  const std::string host = hostOf(URL);
  if (isOwnHost(host)) return true;
  if (DomainHops == 0) return false;
  if (DomainHops < 0 || linkDomain.starts_with(kMailTo)) return true;
  checkDomainHop(host.empty() ? linkDomain : host);
  const bool passes = !Flag;
  Flag = false;
  return passes;
}

// The table keeps no scheme.
void clsLinkParser::rememberHttpsHost() {
  if (!URL.starts_with(kHttps)) return;
  std::string host = extractLinkDomain();
  if (host == httpsHost_) return;
  rememberHttps(URL);
  httpsHost_ = std::move(host);
}

bool clsLinkParser::insert() {
  const std::int64_t bytes = std::ssize(link_.url.text());
  if (bytes > Room.bytes) {
    ++Room.leftOut;
    return false;
  }
  link_.siteId = SiteID;
  link_.userName = UserName;
  link_.password = Password;
  LinkID = insertLink(link_);
  Room.bytes -= bytes;
  return Flag = true;
}

}  // namespace mv
