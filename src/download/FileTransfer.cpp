#include "FileTransfer.h"

#include <algorithm>
#include <utility>

#include "FileSize.h"
#include "LoginWatch.h"
#include "net/TextBody.h"
#include "transfer/InternetTransfer.h"

namespace mv {

namespace {

constexpr int kLookInterval = 100;                               // milliseconds
constexpr std::size_t kLongestLoginPage = std::size_t{1} << 20;  // bytes

}  // namespace

FileTransfer::FileTransfer(InternetTransfer& transfer, LoginWatch& login, Arriving arriving)
    : transfer_(transfer), login_(login), arriving_(std::move(arriving)) {
  transfer_.setTextLimit(kLongestLoginPage);
  timer_.setInterval(kLookInterval);
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { look(); });
}

void FileTransfer::askForHeader(const std::string& url) {
  timer_.stop();
  url_ = url;
  mode_ = kGetHeader;
  size_ = {};
  login_.beginRequest();
  transfer_.Execute(url_, "GET", BodyMode::HeadersOnly);
}

void FileTransfer::readSize() { size_ = announcedSize(transfer_.GetHeader("Content-Length")); }

bool FileTransfer::mayBeLoginPage() { return login_.beginAnswer(transfer_); }

void FileTransfer::askForFile(const std::string& folder) {
  mode_ = kGetFile;
  transfer_.setTargetFolder(folder);
  transfer_.Execute(url_, "Get", BodyMode::File);
  timer_.start();
  look();
}

void FileTransfer::askForPage() {
  mode_ = kGetPage;
  transfer_.Execute(url_, "GET", BodyMode::Text);
}

bool FileTransfer::isLoginPage() {
  login_.look(transfer_.TakeText());
  return login_.isLoginPage();
}

void FileTransfer::look() {
  if (transfer_.StillExecuting())
    arriving_(std::min(transfer_.BytesReceived(), size_.bytes));
  else
    timer_.stop();
}

}  // namespace mv
