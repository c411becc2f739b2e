// A body of any length: in memory up to a threshold, beyond it in an unnamed file, which can become the final one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "base/BackgroundWork.h"
#include "files/AtomicFile.h"

namespace mv {

class BodySpool {
 public:
  // The file lies on the file system of `folder` when that can be, "" for a folder of temporary files.
  BodySpool(std::size_t threshold, std::string folder);

  // False when the disk refuses it; error() then has the system's words.
  bool append(std::string_view bytes);
  const std::string& error() const { return error_; }
  // To be called after the last append, false as there.
  bool finish();

  // After finish(): the whole body becomes the content of `target` without a copy. False, and nothing has
  // changed, when it is in memory or cannot be moved.
  bool moveTo(AtomicFile& target);
  // After finish(): the next bytes, at most `size`; empty at the end, where the memory and the file are given
  // back. Raises std::runtime_error when the file cannot be read.
  std::string read(std::size_t size);

 private:
  int openFile();
  bool flush();
  // Of a long body the disk has most by the time that it is whole.
  void startWriteback();
  bool check(int error);
  bool refill();

  std::size_t threshold_;
  std::string folder_;
  // While writing: all that is not in the file yet. While reading from the file: the piece that is being handed out.
  std::string memory_;
  std::size_t readAt_ = 0;
  std::uint64_t fileReadAt_ = 0;
  OpenFile file_;
  std::uint64_t startedTo_ = 0;                // the writeback of what stands before here has been asked for
  std::unique_ptr<BackgroundWork> writeback_;  // of a long body
  std::string error_;
};

}  // namespace mv
