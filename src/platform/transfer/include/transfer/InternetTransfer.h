// The asynchronous HTTP client: GET of an address, reported through a state-change signal, body read in pieces.
//
// All instances share one connection cache, DNS cache and cookie jar (in memory only), so what one window logged in to,
// another is logged in to as well. Hosts that are known to speak https are asked by https, see HttpsHosts. Everything
// runs on the event loop of the thread that created the instance; no call blocks.
//
// Addresses: "http://" or "https://"; without a scheme, http. "user:password@" before the host, each "%XX" of it one
// byte, is sent to that host only (basic or digest authentication) and never shows in an error text. Redirects are
// followed within http and https, at most 20. TLS certificates are verified.
// Time-outs: 60 s to connect; a transfer slower than 1 byte/s for 60 s, or than 100 bytes/s over five minutes, ends.
// What ends with state 11 although the server has answered: a status of 400 or more, an answer that ends within its
// header, a header over 256 KiB, two different lengths, a part (206) that was not asked for, a compressed page that is
// not whole; of a file also a redirect to nowhere and the first byte beyond the announced length.
#pragma once

#include <QObject>
#include <QString>
#include <cstdint>
#include <memory>
#include <string>

#include "transfer/TransferTypes.h"

namespace mv {

class AtomicFile;

class InternetTransfer : public QObject {
  Q_OBJECT
 public:
  explicit InternetTransfer(int index = 0, QObject* parent = nullptr);
  // Ends a running request without a signal.
  ~InternetTransfer() override;

  // Starts a request and returns at once; the outcome arrives as StateChanged, never from inside this call. `operation`
  // is "GET" in any case of letters (std::invalid_argument otherwise). A running request is dropped without a signal.
  //
  // After a HeadersOnly request has completed, the connection stands still with the body unread. Execute of the same
  // address with File goes on with that very response: one request on the wire, no byte twice. Any other Execute, 30 s
  // without one, cancel() or destruction drops it. If it was dropped by time, the address is requested anew.
  void Execute(const std::string& url, const std::string& operation, BodyMode mode);

  // Name and version of the library that it is made of.
  static std::string libraryVersion();

  // The longest text body that this instance takes, in bytes, within that of all (64 MiB). Read when a request starts.
  void setTextLimit(std::size_t bytes);

  // From the next Execute on, requests carry the login that rememberLogin keeps for this site; 0, as at first: none.
  void setSite(std::int64_t site);

  // Drops a running or held request without a signal.
  void cancel();
  // A request is under way (a held response does not count).
  bool StillExecuting() const;

  // All of the completed text that GetChunk has not handed out yet, without a copy; GetChunk has nothing left then.
  std::string TakeText();

  // The folder that the bodies of File requests are meant for, from the next Execute on. A body that does not stay in
  // memory is then kept on its file system, so that it can become the final file; "" or a folder without such files
  // stand in nobody's way.
  void setTargetFolder(const std::string& folder);
  // The whole completed body of a File request becomes the content of `file` without a copy. False, and GetChunk has
  // it, when it is in memory, on another file system or partly read, or when `file` is not empty.
  bool MoveBodyTo(AtomicFile& file);

  // The next piece of the completed body: at most `size` characters of the text, or bytes. Empty when exhausted.
  // Raises std::runtime_error when the spooled body cannot be read.
  std::string GetChunk(std::size_t size, ChunkType type);

  // Value of a header of the final response, name without regard to case; "" when absent. The last one of several.
  std::string GetHeader(const std::string& name) const;

  // After state 11: the HTTP status when it was 400 or more, else the number of the transport error (libcurl's own
  // list); 0 after success. ResponseInfo is the reason phrase or the error's description, without credentials.
  long ResponseCode() const;
  std::string ResponseInfo() const;

  // The address that answered, after all redirects, without user information; "" before an answer.
  std::string ResponseAddress() const;

  // The encoding that the completed text came in, by the name of the WHATWG Encoding Standard in lower case ("utf-8",
  // "windows-1252"); see TextDecoder.
  std::string TextEncoding() const;

  // From now on every request of `site` (its id) to the host (and port) of `address` whose own address holds no user
  // information carries these, as typed; another host never gets them, nor does another site use them. In memory only.
  // Both empty: forgets the site's.
  static void rememberLogin(std::int64_t site, const std::string& address, const std::string& user,
                            const std::string& password);

  // Puts a cookie, a line of the Netscape format, into the set of all, in place of one of the same name, path and
  // domain; one that has expired removes that.
  static void addCookie(const std::string& line);

  // Process-wide, for tests and slow lines. Read when a request starts.
  using Limits = TransferLimits;
  static Limits& limits();
  // Forgets cookies, logins, https hosts and idle connections of the whole program.
  static void forgetSharedState();

 Q_SIGNALS:
  void StateChanged(int index, int state);

 private:
  class Private;
  std::unique_ptr<Private> d;
};

}  // namespace mv
