// The file types that the program knows, kept in the table `valid_filetypes`. All functions raise DatabaseError.
#pragma once

#include <string>
#include <vector>

#include "store/Id.h"

namespace mv {

struct FileType {
  Id id = 0;              // given by the database
  std::string extension;  // without the period, exactly as typed
  std::string description;
  bool canDelete = true;           // false: a built-in one
  bool downloadByDefault = false;  // every new site gets it
};

// In alphabetical order of the extensions.
std::vector<FileType> listFileTypesByName();
// The file types of that extension, without regard to case.
std::vector<Id> fileTypesNamed(const std::string& extension);
void insertFileType(const FileType& fileType);
// False: it is gone.
bool updateFileType(const FileType& fileType);
// With the sites' assignments and folders of that type.
void deleteFileType(Id id);

}  // namespace mv
