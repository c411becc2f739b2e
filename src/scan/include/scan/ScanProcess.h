// Crawls one web site page by page: queue, fetch, links, mark. Without a window; frmScan shows it.
// The scan never ends by itself: a used-up queue is rebuilt from the links that still wait in the database.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "database/Database.h"
#include "process/Process.h"
#include "scan/LoginRequest.h"
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
  // The same from the page's base href.
  std::string computeBasePath(const std::string& baseHref) const;

  // What the window shows.
  std::string title() const;          // "Scan: " + the site's name without a password
  std::string pageLabel() const;      // "Page: " + the shortened address
  std::string pageUrlText() const;    // "Page URL: " + the address
  std::string toScanText() const;     // "To Scan: " + pages left
  std::string processedText() const;  // "Processed: " + pages processed
  // How the site's login stands; "" for a site without one.
  const std::string& loginText() const { return loginText_; }
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
  // What a search string's walk through the page is for.
  enum class Walk { BaseHref, Links };

  void start();
  void finishStart();
  void readCredentials();
  std::string siteField(int fieldId) const;
  void startLogin();
  void reloadLimits();
  void crawl();
  void takeUp(int row);
  void fillQueue();
  void rebuildQueue();
  void markPageDone();
  void pageFailed();
  void processPage();
  void walkPage();
  // False after the last one.
  bool beginNextWalk();
  void linkFound(const std::string& link);
  void handleLink(const std::string& link);
  void storeLink(const std::string& link);
  void finishPage();
  // True when a login request is on its way: the page that answers it comes next.
  bool submitLoginForm();
  void sendLogin(const LoginRequest& request);
  void loginFailed();
  // `request` is the one that the answer's form would make.
  void loginAnswered(const LoginRequest& request);
  std::string lastTryText() const;
  void showWhyNothingSent(const LoginRequest& request);
  void showLogin(const std::string& text);
  bool hasLoginForm() const;
  void report(const std::exception& error);

  clsLinkParser parser_;
  clsPageScanner scanner_;
  std::optional<Recordset> waitingLinks_;  // while the queue is built
  bool started_ = false;
  std::vector<std::string> tags_;

  // The page being worked through.
  Walk walk_ = Walk::BaseHref;
  std::size_t tag_ = 0;
  std::string baseHref_;
  std::string basePath_;
  std::string baseUrl_;  // its address without scheme and credentials
  std::string currentUrl_;
  std::int64_t currentLinkId_ = 0;
  bool pageError_ = false;
  bool isLoginAnswer_ = false;    // it answers, or is to answer, a login request
  bool credentialsSent_ = false;  // it was asked for with the site's user name and password
  std::string requestKind_;
  std::string reported_;  // error last shown; the same is not shown twice for a page

  long rowsAdded_ = 0;
  long pagesLeft_ = 0;
  long pagesProcessed_ = 0;
  std::string alternateMatchpath_;
  bool useUrlCredentials_ = false;
  std::string userName_;
  std::string password_;
  bool loginSent_ = false;  // since the scan started
  int refusals_ = 0;        // of the logins sent last
  std::string loginText_;
  std::string labelUrl_;  // masked, as the window shows them
  std::string shownUrl_;
};

}  // namespace mv
