// Crawls one web site page by page: queue, fetch, links, mark. Without a window; frmScan shows it.
// The scan never ends by itself: a used-up queue is rebuilt from the links that still wait in the database.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "process/Process.h"
#include "scan/clsLinkParser.h"
#include "scan/clsPageScanner.h"

namespace mv {

class ScanProcess : public Process {
  Q_OBJECT
 public:
  ScanProcess();

  // Given by the opener before initWindow.
  std::int32_t SiteID = 0;
  std::string SiteName;  // the start address without "http://"
  std::string Domain;
  std::int32_t LoginFormID = 0;
  long DomainHops = 0;

  static constexpr int kQueueLimit = 10000;

  // Starts the scan: credentials, limits, queue, tags, filters, work timer.
  void initWindow();
  void buildTagArray();
  void buildQueue();
  // One work step, as the timer runs it.
  void crawlStep();
  // `kind` "pagestoscan" refreshes the counters, "error" fills the error panel; other kinds do nothing.
  void updateStatus(const std::string& kind, const std::string& reason = {}, long code = 0);
  // The text before which the current page's relative links are placed; ends with "/".
  std::string computeBasePath();

  // What the window shows.
  std::string pageLabel() const;      // "Page: " + the shortened address
  std::string pageUrlText() const;    // "Page URL: " + the address
  std::string toScanText() const;     // "To Scan: " + pages left
  std::string processedText() const;  // "Processed: " + pages processed
  const std::vector<std::string>& tags() const { return tags_; }
  long pagesLeft() const { return pagesLeft_; }

 Q_SIGNALS:
  // A page has been worked through and its links are stored.
  void pageProcessed();

 protected:
  void tick() override;
  void transferEvent(int state) override;
  void failed(const std::exception& error) override;

 private:
  void readCredentials();
  void reloadLimits();
  void takeUp(int row);
  void rebuildQueue();
  void pageFailed();
  void processPage();
  void processLinksFrom(std::size_t tag);
  void handleLink(const std::string& link);
  void finishPage();
  void markPageDone();

  clsLinkParser parser_;
  clsPageScanner scanner_;
  std::vector<std::string> tags_;
  std::shared_ptr<const std::string> pageText_;
  std::string basePath_;
  std::string baseUrl_;      // the current page's address without scheme and credentials
  std::string currentUrl_;
  std::int64_t currentLinkId_ = 0;
  long queueCount_ = 0;
  long rowsAdded_ = 0;
  long pagesLeft_ = 0;
  long pagesProcessed_ = 0;
  bool pageError_ = false;
  bool reportedThisPage_ = false;  // a database error of this page has been shown
  std::string alternateMatchpath_;
  bool useUrlCredentials_ = false;
  std::string userName_;
  std::string password_;
  std::string shownUrl_;
  std::string requestKind_;
};

}  // namespace mv
