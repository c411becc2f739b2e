// Undoes the compression of a page, and knows whether all of it was there: libcurl takes a stream that ends too early
// for a whole one.
#pragma once

#include <functional>
#include <memory>
#include <string_view>

struct z_stream_s;

namespace mv {

class Unpacker {
 public:
  // What a request says that it takes.
  static constexpr const char* kAccepted = "gzip, deflate";

  // `contentEncoding`: the header's value; "" or "identity" for bytes as they are.
  explicit Unpacker(std::string_view contentEncoding = {});
  ~Unpacker();
  Unpacker(Unpacker&&) noexcept;
  Unpacker& operator=(Unpacker&&) noexcept;

  // A compression that was not asked for: nothing can be unpacked.
  bool isUnknown() const { return way_ == Way::Unknown; }
  // The bytes are handed through as they are.
  bool isPlain() const { return way_ == Way::Plain; }

  using Take = std::function<bool(std::string_view)>;
  // Hands what `bytes` unpack to on to `take`, piece by piece. False when they are no such stream, or when `take` says
  // so.
  bool append(std::string_view bytes, const Take& take);
  // The stream has come to its own end. One without a byte is whole, too.
  bool isWhole() const;

 private:
  enum class Way { Plain, Gzip, Deflate, Unknown };

  bool begin(std::string_view bytes);
  bool goOn(const Take& take);

  struct StreamDeleter {
    void operator()(z_stream_s* stream) const;
  };

  Way way_;
  std::unique_ptr<z_stream_s, StreamDeleter> stream_;
  bool ended_ = false;
};

}  // namespace mv
