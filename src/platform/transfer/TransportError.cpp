#include "TransportError.h"

#include <QString>
#include <algorithm>

#include "base/Text.h"

namespace mv {

namespace {

constexpr int kLongestLine = 300;  // characters

struct Problem {
  long result;  // of the verification, in OpenSSL's numbering (X509_V_ERR_...)
  const char* words;
};

constexpr Problem kCertificateProblems[] = {
    {1, "is for another host"},  // all else was verified
    {2, "has an unknown issuer"},
    {9, "is not valid yet"},
    {10, "has expired"},
    {18, "has an unknown issuer: it is signed by itself"},
    {19, "has an unknown issuer: one that is signed by itself"},
    {20, "has an unknown issuer"},
    {21, "has an unknown issuer"},
    {23, "has been revoked"},
    {62, "is for another host"},
};

std::string certificateText(CURL* easy, std::string_view detail) {
  long result = 0;
  curl_easy_getinfo(easy, CURLINFO_SSL_VERIFYRESULT, &result);
  const auto* found = std::find_if(std::begin(kCertificateProblems), std::end(kCertificateProblems),
                                   [result](const Problem& problem) { return problem.result == result; });
  const std::string words = found == std::end(kCertificateProblems) ? "cannot be verified" : found->words;
  return "The server's certificate " + words + " (" + std::string(detail) + ")";
}

}  // namespace

std::string transportErrorText(CURL* easy, CURLcode code, std::string_view detail) {
  if (detail.empty()) detail = curl_easy_strerror(code);
  if (code == CURLE_PEER_FAILED_VERIFICATION) return certificateText(easy, detail);
  if (code == CURLE_SSL_CONNECT_ERROR) return "No encrypted connection could be made (" + std::string(detail) + ")";
  return std::string(detail);
}

bool isHttpsFailure(CURL* easy, CURLcode code) {
  switch (code) {
    case CURLE_COULDNT_CONNECT:
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CIPHER:
    case CURLE_SSL_CERTPROBLEM:
      return true;
    case CURLE_OPERATION_TIMEDOUT:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR: {
      // A handshake that was never answered.
      curl_off_t done = 0;
      curl_easy_getinfo(easy, CURLINFO_APPCONNECT_TIME_T, &done);
      return done == 0;
    }
    default:
      return false;
  }
}

std::string asPlainLine(const std::string& text) {
  QString line;
  for (const QChar character : toQString(text)) {
    const bool directs = character.category() == QChar::Other_Format;
    const bool breaks =
        character.category() == QChar::Separator_Line || character.category() == QChar::Separator_Paragraph;
    if (line.size() >= kLongestLine) break;
    if (!directs) line += character.category() == QChar::Other_Control || breaks ? QChar(' ') : character;
  }
  return toUtf8(line.trimmed());
}

}  // namespace mv
