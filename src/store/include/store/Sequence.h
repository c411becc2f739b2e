// Named identifier sequences, kept in the table `valid_sid`.
#pragma once

#include <string_view>

#include "store/Id.h"

namespace mv {

// The value to use now; the next request gets the one after it. An unknown name or a failing statement is reported to
// the user, nothing is written, and the answer is 0.
Id nextSequenceValue(std::string_view sidName);
// The same, for use within a Transaction: raises DatabaseError. In a commit group the sequence is stored at its end.
Id drawSequenceValue(std::string_view sidName);

}  // namespace mv
