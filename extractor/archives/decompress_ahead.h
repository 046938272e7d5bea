#ifndef QUORVANE_EXTRACTOR_ARCHIVES_DECOMPRESS_AHEAD_H
#define QUORVANE_EXTRACTOR_ARCHIVES_DECOMPRESS_AHEAD_H

#include "archive/ready_data.h"

struct ExtractorRun;

// Decompresses a carried archive before its turn, while the one before it is decompressed, verified
// and extracted, and while Java writes its class data. On its turn everything is logged, verified
// and extracted as ever; an archive that could not be decompressed ahead, for whatever reason, is
// decompressed then. At most one archive is ahead. Its two files lie in a temporary folder of the
// master folder. Nothing happens ahead with one processor, with little space on the disk, or for
// an archive that is decompressed in no time. Logs nothing but the making and the removal of the
// folder. Main thread.

// The smallest compressed archive that is decompressed ahead, in bytes.
constexpr long SMALLEST_AHEAD = 1L << 20;

// Starts the LZMA tool on the archive after the one at the position of run.tailStream, if it is
// there already. The position stays.
void beginNextAhead(ExtractorRun& run);

// If the archive at the position of run.tailStream was begun ahead, waits for the tool. Returns
// whether `*ready` has what it made, whose paths live until the next call of any function here.
[[nodiscard]] bool takeAhead(ExtractorRun& run, ReadyData* ready);

// Ends what is still at work, and removes the folder. Also for a process that ends.
void endAhead();

#endif
