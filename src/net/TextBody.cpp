#include "net/TextBody.h"

namespace mv {

std::string readTextBody(InternetTransfer& transfer) {
  std::string text;
  for (auto piece = transfer.GetChunk(kChunkSize, ChunkType::Text); !piece.empty();
       piece = transfer.GetChunk(kChunkSize, ChunkType::Text)) {
    text += piece;
  }
  return text;
}

}  // namespace mv
