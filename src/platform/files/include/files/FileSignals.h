// Signals that the system sends to a program whose write fails. Their default action ends it.
#pragma once

namespace mv {

// From now on such a write fails with an error instead, as any other: EFBIG beyond the largest size that files may have
// (SIGXFSZ), EPIPE when nobody reads any more (SIGPIPE). For the whole program, before it begins.
void makeFileSignalsErrors();

}  // namespace mv
