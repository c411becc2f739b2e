// The one way in which an unexpected error reaches the user, and the wrapper that every slot stands in.
#pragma once

#include <exception>
#include <string>
#include <utility>

namespace mv {

// Tells the user, as a critical notice: "An error has occured", number, description,
// source and extra on lines of their own. Error 35600 of source "ListSubItems" is not shown. While a box with the same
// text stands open, a further one is not shown.
void reportError(long number, const std::string& description, const std::string& source, const std::string& extra);

// The same for a caught exception: DatabaseError and FileError with their numbers, any other with 0; `source` is used
// where the exception has none.
void reportException(const std::exception& error, const std::string& source, const std::string& extra = {});

// Runs `work`; an exception is reported and swallowed. `source` names the window or procedure. True when it succeeded.
template <class Work>
bool guarded(const char* source, Work&& work) {
  try {
    std::forward<Work>(work)();
    return true;
  } catch (const std::exception& error) {
    reportException(error, source);
    return false;
  }
}

}  // namespace mv
