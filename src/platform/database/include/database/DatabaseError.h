// What the database raises.
#pragma once

#include <stdexcept>
#include <string>

namespace mv {

// A failure of the engine. Numbers follow the published list of the Jet engine's trappable errors.
class DatabaseError : public std::runtime_error {
 public:
  DatabaseError(long number, std::string description, std::string source = "Database");

  long number() const { return number_; }
  const std::string& description() const { return description_; }
  const std::string& source() const { return source_; }
  // The statement is not at fault but what surrounds it: another program's lock, the disk. Later it may succeed.
  bool mayPass() const;

  enum Number : long {
    kInvalidArgument = 3001,
    kNoCurrentRecord = 3021,
    kDuplicateKey = 3022,
    kFileNotFound = 3024,
    kDiskFull = 3026,
    kReadOnly = 3027,
    kDiskError = 3043,
    kAlreadyExists = 3204,
    kUnknownColumn = 3061,  // a name in the statement that is no column: the engine takes it for a parameter
    kSyntaxError = 3075,
    kUnknownTable = 3078,
    kLocked = 3260,
    kItemNotFound = 3265,        // a recordset has no field of that name
    kUnrecognizedFormat = 3343,  // not a database, or a damaged one
    kNotOpen = 3420,
  };

 private:
  long number_;
  std::string description_;
  std::string source_;
};

}  // namespace mv
