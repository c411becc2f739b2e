// Which hosts are asked by https although their addresses do not say so: the table of links keeps no scheme. A host is
// meant with its port; the usual port of either scheme is the same host.
#pragma once

#include <string>
#include <string_view>

namespace mv {

enum class HttpsUse {
  No,     // as the address says
  Tried,  // by https; by http for the rest of the run when https cannot be had
  Only,   // by https or not at all
};

// The host of `address`, with or without a scheme, was met with https: in a link, or because it has answered so.
void rememberHttps(std::string_view address);
// The user wants the host of `address` asked by https; for this run.
void requireHttps(std::string_view address);
// It could not be had by https: for the rest of the run it is asked as its addresses say. A required one stays.
void giveUpHttps(const std::string& host);
// A Strict-Transport-Security field (RFC 6797) that the host of `address` has sent by https.
void rememberHsts(std::string_view address, std::string_view field);

// `host` as in RequestAddress.
HttpsUse httpsUse(const std::string& host);

// From now on what is remembered is kept in a file of this folder, UTF-8, for the runs to come; what is there already
// is read. Without a call it is kept in memory.
void keepHttpsHosts(const std::string& folder);
// Writes what has not been written yet; else that happens a second after a change, and at the end of the program.
void saveHttpsHosts();
// Forgets all, and the folder, too; the file stays.
void forgetHttpsHosts();

}  // namespace mv
