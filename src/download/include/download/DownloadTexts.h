// The words for a download's status, as its window shows them and the error log keeps them.
#pragma once

#include <string>

#include "download/DownloadStatus.h"

namespace mv {

std::string downloadTitle(const std::string& siteName);        // "Download: " + name, user information masked
std::string fileText(const DownloadStatus& status);            // "File: " + name + what became of it
std::string queueText(const DownloadStatus& status);           // "Queue: " + files
std::string filesProcessedText(const DownloadStatus& status);  // "Processed: " + files
std::string sizeText(const DownloadStatus& status);            // kilobytes, or why the file is not wanted
std::string receivedText(const DownloadStatus& status);        // "Received: " + bytes
std::string leftText(const DownloadStatus& status);            // "Left: " + bytes
// What came of the files, `failed` among them, and what waits: "3 files saved, 1 failed. Nothing waits."
std::string outcomeText(const DownloadStatus& status, long failed);
std::string savePathText(const DownloadStatus& status);  // "Saving to: " + folder

}  // namespace mv
