#include "testkit/TlsFront.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QTemporaryFile>
#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <mutex>
#include <set>
#include <stdexcept>
#include <thread>
#include <vector>

namespace mvtest {

namespace {

constexpr char kTlsRecord = 0x16;  // the first byte of a handshake
constexpr long kHour = 3600;

template <class T>
T* checked(T* made) {
  if (made == nullptr) throw std::runtime_error("No certificate could be made");
  return made;
}

void addExtension(X509* certificate, int kind, const char* value) {
  X509V3_CTX context;
  X509V3_set_ctx(&context, certificate, certificate, nullptr, nullptr, 0);
  X509_EXTENSION* extension = checked(X509V3_EXT_conf_nid(nullptr, &context, kind, value));
  X509_add_ext(certificate, extension, -1);
  X509_EXTENSION_free(extension);
}

X509* newCertificate(EVP_PKEY* key, TlsFront::Kind kind) {
  X509* certificate = checked(X509_new());
  X509_set_version(certificate, X509_VERSION_3);
  ASN1_INTEGER_set(X509_get_serialNumber(certificate), 1);
  X509_gmtime_adj(X509_getm_notBefore(certificate), -2 * kHour);
  X509_gmtime_adj(X509_getm_notAfter(certificate), kind == TlsFront::Kind::Expired ? -kHour : kHour);
  X509_set_pubkey(certificate, key);
  const auto* name = reinterpret_cast<const unsigned char*>("Test issuer");
  X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate), "CN", MBSTRING_ASC, name, -1, -1, 0);
  X509_set_issuer_name(certificate, X509_get_subject_name(certificate));
  addExtension(certificate, NID_basic_constraints, "CA:TRUE");
  addExtension(certificate, NID_subject_alt_name,
               kind == TlsFront::Kind::OtherHost ? "DNS:other.test" : "DNS:localhost");
  X509_sign(certificate, key, EVP_sha256());
  return certificate;
}

int socketTo(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (::connect(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
    std::perror("The front does not reach its site");
  return socket;
}

// One end of a relay: the client's may be encrypted.
struct End {
  int socket;
  SSL* tls = nullptr;

  int receive(std::array<char, 16384>& bytes) const {
    return tls != nullptr ? SSL_read(tls, bytes.data(), static_cast<int>(bytes.size()))
                          : static_cast<int>(::recv(socket, bytes.data(), bytes.size(), 0));
  }
  bool send(const std::array<char, 16384>& bytes, int count) const {
    return (tls != nullptr ? SSL_write(tls, bytes.data(), count)
                           : ::send(socket, bytes.data(), static_cast<std::size_t>(count), MSG_NOSIGNAL)) > 0;
  }
  bool hasRead() const { return tls != nullptr && SSL_pending(tls) != 0; }
};

}  // namespace

struct TlsFront::Private {
  Private(int sitePort, Kind frontKind);
  ~Private();

  void acceptAll();
  void serve(int client);
  static void relay(const End& client, const End& server);

  int site;
  Kind kind;
  SSL_CTX* context;
  QTemporaryFile certificate;
  int listener;
  int port = 0;
  std::atomic<int> encrypted = 0;
  std::atomic<int> plain = 0;
  std::mutex mutex;
  std::set<int> sockets;
  std::vector<std::thread> servers;
  std::thread acceptor;
};

TlsFront::Private::Private(int sitePort, Kind frontKind)
    : site(sitePort), kind(frontKind), context(checked(SSL_CTX_new(TLS_server_method()))) {
  std::signal(SIGPIPE, SIG_IGN);  // OpenSSL writes to sockets that the client has left
  EVP_PKEY* key = checked(EVP_EC_gen("P-256"));
  X509* made = newCertificate(key, kind);
  SSL_CTX_use_certificate(context, made);
  SSL_CTX_use_PrivateKey(context, key);
  certificate.open();
  std::FILE* file = std::fopen(certificate.fileName().toLocal8Bit().constData(), "w");
  PEM_write_X509(file, made);
  std::fclose(file);
  X509_free(made);
  EVP_PKEY_free(key);

  listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* any = reinterpret_cast<sockaddr*>(&address);
  if (::bind(listener, any, size) != 0 || ::listen(listener, 64) != 0 || ::getsockname(listener, any, &size) != 0)
    throw std::runtime_error("The port cannot be served");
  port = ntohs(address.sin_port);
  acceptor = std::thread([this] { acceptAll(); });
}

TlsFront::Private::~Private() {
  ::shutdown(listener, SHUT_RDWR);
  acceptor.join();
  {
    const std::lock_guard lock(mutex);
    for (const int socket : sockets) ::shutdown(socket, SHUT_RDWR);
  }
  for (auto& server : servers) server.join();
  ::close(listener);
  SSL_CTX_free(context);
}

void TlsFront::Private::acceptAll() {
  for (int client = ::accept(listener, nullptr, nullptr); client >= 0; client = ::accept(listener, nullptr, nullptr)) {
    const std::lock_guard lock(mutex);
    sockets.insert(client);
    servers.emplace_back([this, client] { serve(client); });
  }
}

void TlsFront::Private::serve(int client) {
  char first = 0;
  const bool isTls = ::recv(client, &first, 1, MSG_PEEK) == 1 && first == kTlsRecord;
  ++(isTls ? encrypted : plain);
  const int server = socketTo(site);
  SSL* tls = isTls ? SSL_new(context) : nullptr;
  if (tls != nullptr) SSL_set_fd(tls, client);
  if (!isTls || (kind != Kind::NoTls && SSL_accept(tls) == 1)) relay({client, tls}, {server});
  if (tls != nullptr) SSL_free(tls);
  const std::lock_guard lock(mutex);
  sockets.erase(client);
  ::close(client);
  ::close(server);
}

// Both ways, until one side ends.
void TlsFront::Private::relay(const End& client, const End& server) {
  std::array<char, 16384> bytes{};
  while (true) {
    std::array<pollfd, 2> ends{pollfd{client.socket, POLLIN, 0}, pollfd{server.socket, POLLIN, 0}};
    if (!client.hasRead() && ::poll(ends.data(), ends.size(), -1) < 0) return;
    const bool answers = ends[1].revents != 0;
    const int count = (answers ? server : client).receive(bytes);
    if (count <= 0 || !(answers ? client : server).send(bytes, count)) return;
  }
}

TlsFront::TlsFront(const TestSite& site, Kind kind) : d(std::make_unique<Private>(site.port(), kind)) {}

TlsFront::~TlsFront() = default;

std::string TlsFront::host() const { return "localhost:" + std::to_string(d->port); }

std::string TlsFront::certificateFile() const { return d->certificate.fileName().toStdString(); }

int TlsFront::encrypted() const { return d->encrypted; }

int TlsFront::plain() const { return d->plain; }

}  // namespace mvtest
