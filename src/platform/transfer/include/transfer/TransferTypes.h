// What a request wants, what it reports and what bounds it.
#pragma once

#include <cstddef>
#include <string>

namespace mv {

// What a request wants of the response.
enum class BodyMode {
  Text,         // a page: decompressed, as UTF-8 (see TextDecoder), at most 64 MiB (a longer one ends with state 11)
  HeadersOnly,  // state 12 as soon as the headers are in; the response is held, see InternetTransfer::Execute
  File,         // a file: bytes as sent, asked for without compression, on disk past 1 MiB
};

enum class ChunkType { Text, Bytes };

// States of a request, in the numbering that a published transfer control made customary. Every one is raised by a real
// event of the connection; a reused connection skips what it does not do again.
enum TransferState {
  kResolvingHost = 1,
  kHostResolved = 2,
  kConnecting = 3,
  kConnected = 4,
  kRequesting = 5,
  kRequestSent = 6,
  kReceivingResponse = 7,
  kResponseReceived = 8,
  kDisconnecting = 9,
  kDisconnected = 10,
  kError = 11,
  kResponseCompleted = 12,
};

struct TransferLimits {
  long connectTimeoutMs = 60'000;
  long stallTimeoutS = 60;                            // at less than a byte a second
  long slowSpanMs = 300'000;                          // a response is given up that brings over such a time
  long slowBytesPerSecond = 100;                      // less than this
  int holdMs = 30'000;                                // a held response waits so long for its body to be wanted
  std::size_t textLimit = std::size_t{64} << 20;      // bytes
  std::size_t spoolThreshold = std::size_t{1} << 20;  // bytes of a file that stay in memory
  std::string certificates;                           // file of trusted issuers (PEM); "": those of the system
};

}  // namespace mv
