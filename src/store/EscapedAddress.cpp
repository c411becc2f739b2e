#include "store/EscapedAddress.h"

#include "database/Database.h"
#include "store/EscapeText.h"

namespace mv {

EscapedAddress EscapedAddress::escape(std::string address) {
  escapeText(kRemoveQuotes, address);
  return EscapedAddress(std::move(address));
}

EscapedAddress EscapedAddress::read(const Recordset& row) { return EscapedAddress(row.text("url")); }

std::string EscapedAddress::restored() const {
  std::string address = text_;
  escapeText(kRestoreQuotes, address);
  return address;
}

}  // namespace mv
