// A body of any length: in memory up to a threshold, beyond it in a temporary file that nobody else sees.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

class QTemporaryFile;

namespace mv {

class BodySpool {
 public:
  explicit BodySpool(std::size_t threshold);
  ~BodySpool();
  BodySpool(const BodySpool&) = delete;
  BodySpool& operator=(const BodySpool&) = delete;

  // False when the disk refuses it; error() then has the system's words.
  bool append(std::string_view bytes);
  // After the last append: from here on it is read from the start. False as above.
  bool rewind();
  const std::string& error() const { return error_; }

  // The next bytes, at most `size`; empty at the end, where the memory and the file are given back. Raises
  // std::runtime_error when the file cannot be read.
  std::string read(std::size_t size);

 private:
  bool spill();
  bool refill();

  std::size_t threshold_;
  // While writing: all that is not in the file. While reading from the file: the piece that is being handed out.
  std::string memory_;
  std::size_t readAt_ = 0;
  std::unique_ptr<QTemporaryFile> file_;
  std::string error_;
};

}  // namespace mv
