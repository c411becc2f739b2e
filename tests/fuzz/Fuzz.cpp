#include "Fuzz.h"

#include <QStringDecoder>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace mvfuzz {

void require(bool holds, const char* promise) {
  if (holds) return;
  std::fprintf(stderr, "Broken: %s\n", promise);
  std::abort();
}

std::string_view takePart(std::string_view& rest) {
  const std::size_t end = rest.find('\x1e');
  const std::string_view part = rest.substr(0, end);
  rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  return part;
}

bool isUtf8(std::string_view text) {
  QStringDecoder decoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
  const QString decoded = decoder(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
  return !decoder.hasError() && !decoded.isNull();
}

}  // namespace mvfuzz

// libFuzzer's entry.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  mvfuzz::fuzzOne({reinterpret_cast<const char*>(data), size});
  return 0;
}
