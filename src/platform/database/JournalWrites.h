// Fewer and larger writes to the write-ahead journal.
#pragma once

namespace mv::engine {

// The name of a layer over the engine's own file system, for sqlite3_open_v2. The engine writes a page to the journal
// in two calls; here what follows each other is gathered and written at once, before the commit that it belongs to
// returns: a commit still survives the end of the program. Everything else passes through.
const char* gatheringFileSystem();

}  // namespace mv::engine
