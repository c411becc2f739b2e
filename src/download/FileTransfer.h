// Asks the server for one file: for its header first and, by what that says, for the file itself or for a page that may
// be the login page in its place.
#pragma once

#include <QTimer>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "download/DownloadStatus.h"

namespace mv {

class InternetTransfer;
class LoginWatch;

class FileTransfer {
 public:
  // Hears several times a second how many bytes of the file have arrived: over a network that is what takes the time,
  // its body is read at once when it is whole. Must not throw.
  using Arriving = std::function<void(std::int64_t bytes)>;
  // Both outlive this.
  FileTransfer(InternetTransfer& transfer, LoginWatch& login, Arriving arriving);

  // What the transfer's answer belongs to: kGetHeader, kGetFile or kGetPage; "" before.
  std::string_view mode() const { return mode_; }
  // As announced by the header.
  const SizeStatus& size() const { return size_; }

  void askForHeader(const std::string& url);
  // The header has come.
  void readSize();
  // What comes is a page, of a site with a login form.
  bool mayBeLoginPage();
  // The body is wanted, to be saved in `folder`.
  void askForFile(const std::string& folder);
  void askForPage();
  // The page has come: is it the login page?
  bool isLoginPage();

 private:
  void look();

  InternetTransfer& transfer_;
  LoginWatch& login_;
  Arriving arriving_;
  std::string url_;
  std::string_view mode_;
  SizeStatus size_;
  QTimer timer_;
};

}  // namespace mv
