#include "decoding/Encoding.h"

#include <QList>
#include <QStringDecoder>
#include <QStringEncoder>
#include <algorithm>

#include "base/Text.h"

namespace mv {

namespace {

struct Labels {
  const char* encoding;
  const char* decoder;
  const char* others;  // between blanks, the encoding's own name left out
};

// The standard's table of labels. Where a decoder has another name it reads more than the old set of that name did, as
// the standard wants it.
constexpr Labels kLabels[] = {
    {"utf-8", "utf-8", " unicode-1-1-utf-8 unicode11utf8 unicode20utf8 utf8 x-unicode20utf8 "},
    {"windows-1252", "windows-1252",
     " ansi_x3.4-1968 ascii cp1252 cp819 csisolatin1 ibm819 iso-8859-1 iso-ir-100 iso8859-1 iso88591 iso_8859-1 "
     "iso_8859-1:1987 l1 latin1 us-ascii x-cp1252 "},
    {"ibm866", "ibm866", " 866 cp866 csibm866 "},
    {"iso-8859-2", "iso-8859-2", " csisolatin2 iso-ir-101 iso8859-2 iso88592 iso_8859-2 iso_8859-2:1987 l2 latin2 "},
    {"iso-8859-3", "iso-8859-3", " csisolatin3 iso-ir-109 iso8859-3 iso88593 iso_8859-3 iso_8859-3:1988 l3 latin3 "},
    {"iso-8859-4", "iso-8859-4", " csisolatin4 iso-ir-110 iso8859-4 iso88594 iso_8859-4 iso_8859-4:1988 l4 latin4 "},
    {"iso-8859-5", "iso-8859-5",
     " csisolatincyrillic cyrillic iso-ir-144 iso8859-5 iso88595 iso_8859-5 iso_8859-5:1988 "},
    {"iso-8859-6", "iso-8859-6",
     " arabic asmo-708 csiso88596e csiso88596i csisolatinarabic ecma-114 iso-8859-6-e iso-8859-6-i iso-ir-127 "
     "iso8859-6 iso88596 iso_8859-6 iso_8859-6:1987 "},
    {"iso-8859-7", "iso-8859-7",
     " csisolatingreek ecma-118 elot_928 greek greek8 iso-ir-126 iso8859-7 iso88597 iso_8859-7 iso_8859-7:1987 "
     "sun_eu_greek "},
    {"iso-8859-8", "iso-8859-8",
     " csiso88598e csisolatinhebrew hebrew iso-8859-8-e iso-ir-138 iso8859-8 iso88598 iso_8859-8 iso_8859-8:1988 "
     "visual "},
    {"iso-8859-8-i", "iso-8859-8", " csiso88598i logical "},
    {"iso-8859-10", "iso-8859-10", " csisolatin6 iso-ir-157 iso8859-10 iso885910 l6 latin6 "},
    {"iso-8859-13", "iso-8859-13", " iso8859-13 iso885913 "},
    {"iso-8859-14", "iso-8859-14", " iso8859-14 iso885914 "},
    {"iso-8859-15", "iso-8859-15", " csisolatin9 iso8859-15 iso885915 iso_8859-15 l9 "},
    {"iso-8859-16", "iso-8859-16", " "},
    {"koi8-r", "koi8-r", " cskoi8r koi koi8 koi8_r "},
    {"koi8-u", "koi8-u", " koi8-ru "},
    {"macintosh", "macintosh", " csmacintosh mac x-mac-roman "},
    {"windows-874", "windows-874", " dos-874 iso-8859-11 iso8859-11 iso885911 tis-620 "},
    {"windows-1250", "windows-1250", " cp1250 x-cp1250 "},
    {"windows-1251", "windows-1251", " cp1251 x-cp1251 "},
    {"windows-1253", "windows-1253", " cp1253 x-cp1253 "},
    {"windows-1254", "windows-1254",
     " cp1254 csisolatin5 iso-8859-9 iso-ir-148 iso8859-9 iso88599 iso_8859-9 iso_8859-9:1989 l5 latin5 x-cp1254 "},
    {"windows-1255", "windows-1255", " cp1255 x-cp1255 "},
    {"windows-1256", "windows-1256", " cp1256 x-cp1256 "},
    {"windows-1257", "windows-1257", " cp1257 x-cp1257 "},
    {"windows-1258", "windows-1258", " cp1258 x-cp1258 "},
    {"x-mac-cyrillic", "x-mac-cyrillic", " x-mac-ukrainian "},
    {"gbk", "gb18030", " chinese csgb2312 csiso58gb231280 gb2312 gb_2312 gb_2312-80 iso-ir-58 x-gbk "},
    {"gb18030", "gb18030", " "},
    {"big5", "big5-hkscs", " big5-hkscs cn-big5 csbig5 x-x-big5 "},
    {"euc-jp", "euc-jp", " cseucpkdfmtjapanese x-euc-jp "},
    {"iso-2022-jp", "iso-2022-jp", " csiso2022jp "},
    {"shift_jis", "windows-31j", " csshiftjis ms932 ms_kanji shift-jis sjis windows-31j x-sjis "},
    {"euc-kr", "windows-949",
     " cseuckr csksc56011987 iso-ir-149 korean ks_c_5601-1987 ks_c_5601-1989 ksc5601 ksc_5601 windows-949 "},
    {"utf-16be", "utf-16be", " unicodefffe "},
    {"utf-16le", "utf-16le", " csunicode iso-10646-ucs-2 ucs-2 unicode unicodefeff utf-16 "},
    {"x-user-defined", "windows-1252", " "},
    // Sets in which text can hide from whoever checks it: nothing is read from such a page.
    {"replacement", "", " csiso2022kr hz-gb-2312 iso-2022-cn iso-2022-cn-ext iso-2022-kr "},
};

constexpr std::string_view kDigits = "0123456789ABCDEF";

void appendPercentEncoded(std::string& out, std::string_view bytes) {
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      out += c;
      continue;
    }
    out += '%';
    out += kDigits[byte >> 4U];
    out += kDigits[byte & 0x0FU];
  }
}

// Opening the two takes longer than a hundred characters.
class Encoder {
 public:
  explicit Encoder(const char* decoder) : encoder_(decoder), back_(decoder) {}

  // "" when the encoding lacks one of the characters: its decoder does not read back what its encoder wrote.
  std::string encoded(const QString& text) {
    const QByteArray bytes = encoder_(text);
    return QString(back_(bytes)) == text ? bytes.toStdString() : std::string();
  }

 private:
  QStringEncoder encoder_;
  QStringDecoder back_;
};

}  // namespace

std::string_view encodingOf(std::string_view label) {
  constexpr std::string_view kBlank = " \t\n\f\r";
  const auto start = std::min(label.find_first_not_of(kBlank), label.size());
  label = label.substr(start, label.find_last_not_of(kBlank) + 1 - start);
  if (label.empty() || label.find(' ') != std::string_view::npos) return {};
  std::string wanted(label);
  for (char& c : wanted)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  const auto found = std::find_if(std::begin(kLabels), std::end(kLabels), [&wanted](const Labels& labels) {
    return labels.encoding == wanted || std::string_view(labels.others).find(" " + wanted + " ") != std::string::npos;
  });
  return found == std::end(kLabels) ? std::string_view() : found->encoding;
}

const char* decoderOf(std::string_view encoding) {
  const auto found = std::find_if(std::begin(kLabels), std::end(kLabels),
                                  [encoding](const Labels& labels) { return labels.encoding == encoding; });
  return found == std::end(kLabels) ? "" : found->decoder;
}

std::string encodedForQuery(std::string_view text, std::string_view encoding) {
  std::string result;
  const std::string_view decoder = decoderOf(encoding);
  if (decoder.empty() || decoder.starts_with("utf-")) {
    appendPercentEncoded(result, text);
    return result;
  }
  const QString whole = toQString(text);
  if (const auto bytes = Encoder(decoder.data()).encoded(whole); !bytes.empty()) {
    appendPercentEncoded(result, bytes);
    return result;
  }
  Encoder encoder(decoder.data());
  for (const char32_t character : whole.toUcs4()) {
    if (const auto bytes = encoder.encoded(QString::fromUcs4(&character, 1)); !bytes.empty())
      appendPercentEncoded(result, bytes);
    else
      result.append("%26%23").append(std::to_string(static_cast<std::uint32_t>(character))).append("%3B");
  }
  return result;
}

}  // namespace mv
