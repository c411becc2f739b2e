// The words for a scan's status, as its window shows them.
#pragma once

#include <string>

#include "scan/ScanStatus.h"

namespace mv {

std::string scanTitle(const std::string& siteName);        // "Scan: " + name, user information masked
std::string pageText(const ScanStatus& status);            // "Page: " + the address, shortened
std::string pageAddressText(const ScanStatus& status);     // "Page URL: " + the address
std::string toScanText(const ScanStatus& status);          // "To Scan: " + pages left
std::string pagesProcessedText(const ScanStatus& status);  // "Processed: " + pages
// What came of the scan, `failed` pages among it, and what waits.
std::string scanOutcomeText(const ScanStatus& status, long failed);
std::string loginText(const LoginStatus& login);  // "Login: " + how it stands; "" when none is needed

}  // namespace mv
