// Crawls one web site page by page: a queue of pages, the walk through each, the site's login. Without a window;
// frmScan shows it. The scan never ends by itself: a used-up queue is rebuilt from the links that still wait in the
// database.
#pragma once

#include <QElapsedTimer>
#include <cstdint>
#include <exception>
#include <optional>
#include <string>

#include "process/Process.h"
#include "scan/PageWalk.h"
#include "scan/ScanQueue.h"
#include "scan/ScanStatus.h"
#include "scan/SiteLogin.h"
#include "scan/clsLinkParser.h"
#include "store/Id.h"
#include "store/StoreTrouble.h"
#include "transfer/SiteLocation.h"

namespace mv {

class ScanProcess : public Process {
  Q_OBJECT
 public:
  ScanProcess();

  // Given by the opener before initWindow.
  Id SiteID = 0;
  std::string SiteName;  // the start address without "http://"
  std::string Domain;    // taken from behind the scheme of a name that has one
  Id LoginFormID = 0;
  long DomainHops = 0;

  // Starts the scan: credentials, limits, queue, tags, filters, work timer. When one of them fails the work timer's
  // next tick starts it anew.
  void initWindow();
  void buildTagArray();
  // Adds the start page and the links that wait. A long queue is built in slices; the scan goes on when it is complete.
  void buildQueue();
  // One work step, as the timer runs it.
  void crawlStep();
  // `kind` "pagestoscan" refreshes the counters, "error" fills the error panel; other kinds do nothing.
  void updateStatus(const std::string& kind, const std::string& reason = {}, long code = 0);
  // The text before which the current page's relative links are placed, from the page's address; ends with "/".
  std::string computeBasePath() const;

  const ScanStatus& status() const { return status_; }
  // It has read pages, and looks at the start page only from now on.
  bool hasNothingLeft() const { return status_.pagesRead > 0 && status_.onlyStartPage; }

 Q_SIGNALS:
  // A page has been worked through and its links are stored.
  void pageProcessed();

 protected:
  void tick() override;
  void transferEvent(int state) override;
  void failed(const std::exception& error) override;

 private:
  // The page being fetched or worked through.
  struct Page {
    std::int64_t linkId = 0;    // 0: its outcome is written
    std::string url = {};       // without parameters for a login's answer
    std::string location = {};  // its address without scheme and credentials
    std::string encoding = {};  // of its text, see InternetTransfer::TextEncoding
    bool failed = false;
    bool isReadAgain = false;      // after a login that let the scan in
    bool isLoginAnswered = false;  // it let the scan in: to be read again
    bool isIncomplete = false;     // the table has refused a link, or the work on the page has failed
    std::string reported = {};     // error last shown; the same is not shown twice for a page
  };

  void start();
  void beginRound();
  void fillQueue();
  // False: the outcome of the page at hand cannot be stored now.
  bool finishPage();
  void storeOutcome();
  int idleTime() const;
  void takeUp(int row);
  void showPage();
  void pageFailed();
  void walkPage();
  // True when the page is walked through; none when the slice could not be stored, and is done again later.
  std::optional<bool> walkSlice();
  void sliceFailed(const std::exception& error);
  std::string answeringAddress() const;
  bool storeLink();
  void reportRefusal();
  void seekForm();
  void pageWalked();
  void logLeftOut();
  // True when a login request is on its way: the page that answers it comes next.
  bool logIn();
  void report(const std::exception& error);

  SiteLocation location_;
  clsLinkParser parser_;
  ScanQueue queue_{lvwLinks};
  PageWalk walk_{parser_};
  SiteLogin login_;
  Page page_;
  std::int64_t readAgainId_ = 0;  // the page that is
  std::exception_ptr refusal_;    // of a link of the slice at hand
  StoreTrouble trouble_;
  ScanStatus status_;
  bool started_ = false;
  QElapsedTimer sinceStartPage_;  // was asked for
};

}  // namespace mv
