// One file type: an extension the program knows.
#pragma once

#include <cstdint>
#include <string>

namespace mv {

class clsFileType {
 public:
  std::string CanDelete;          // "yes" or "no"
  std::string DownloadByDefault;  // "yes" or "no"
  std::string Description;
  std::string Extension;  // without the period, exactly as typed

  // Inserts the record. Raises DatabaseError.
  void Add() const;
  // Writes the record over the row `id`; false when there is no such row any more. Raises DatabaseError.
  bool Update(std::int64_t id) const;
};

}  // namespace mv
