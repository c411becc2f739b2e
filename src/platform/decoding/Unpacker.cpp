#include "decoding/Unpacker.h"

#include <zlib.h>

#include <QByteArray>
#include <array>
#include <new>

namespace mv {

namespace {

constexpr std::size_t kPiece = std::size_t{64} * 1024;
constexpr int kGzip = MAX_WBITS + 16;  // zlib's way to say so
constexpr char kGzipStart = '\x1F';

}  // namespace

void Unpacker::StreamDeleter::operator()(z_stream_s* stream) const {
  inflateEnd(stream);
  delete stream;
}

Unpacker::Unpacker(std::string_view contentEncoding) {
  const auto name =
      QByteArray(contentEncoding.data(), static_cast<qsizetype>(contentEncoding.size())).trimmed().toLower();
  if (name.isEmpty() || name == "identity" || name == "none")
    way_ = Way::Plain;
  else if (name == "gzip" || name == "x-gzip")
    way_ = Way::Gzip;
  else
    way_ = name == "deflate" ? Way::Deflate : Way::Unknown;
}

Unpacker::~Unpacker() = default;
Unpacker::Unpacker(Unpacker&&) noexcept = default;
Unpacker& Unpacker::operator=(Unpacker&&) noexcept = default;

// "deflate" means zlib's format, and is sent by some servers without that format's two bytes of head.
bool Unpacker::begin(std::string_view bytes) {
  stream_.reset(new z_stream_s{});
  const bool hasHead = (static_cast<unsigned char>(bytes.front()) & 0x8FU) == Z_DEFLATED;
  const int window = way_ == Way::Gzip ? kGzip : hasHead ? MAX_WBITS : -MAX_WBITS;
  const int result = inflateInit2(stream_.get(), window);
  if (result == Z_MEM_ERROR) throw std::bad_alloc();
  return result == Z_OK;
}

bool Unpacker::append(std::string_view bytes, const Take& take) {
  if (way_ == Way::Plain) return take(bytes);
  if (way_ == Way::Unknown) return false;
  if (bytes.empty()) return true;
  if (!stream_ && !begin(bytes)) return false;
  stream_->next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
  stream_->avail_in = static_cast<uInt>(bytes.size());
  while (stream_->avail_in > 0) {
    if (ended_) {
      // Another member of a gzip stream; what else may stand there means nothing.
      if (way_ != Way::Gzip || static_cast<char>(*stream_->next_in) != kGzipStart) return true;
      ended_ = false;
      inflateReset(stream_.get());
    }
    if (!goOn(take)) return false;
  }
  return true;
}

// Until the input is used up or the stream has ended.
bool Unpacker::goOn(const Take& take) {
  std::array<char, kPiece> out;  // NOLINT(cppcoreguidelines-pro-type-member-init): zlib fills it
  do {
    stream_->next_out = reinterpret_cast<Bytef*>(out.data());
    stream_->avail_out = kPiece;
    const int result = inflate(stream_.get(), Z_NO_FLUSH);
    if (result == Z_MEM_ERROR) throw std::bad_alloc();
    if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR) return false;
    if (!take({out.data(), kPiece - stream_->avail_out})) return false;
    ended_ = result == Z_STREAM_END;
  } while (!ended_ && stream_->avail_out == 0);
  return true;
}

bool Unpacker::isWhole() const { return way_ == Way::Plain || !stream_ || ended_; }

}  // namespace mv
