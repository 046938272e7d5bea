#ifndef QUORVANE_EXTRACTOR_ARCHIVES_DECOMPRESS_AHEAD_H
#define QUORVANE_EXTRACTOR_ARCHIVES_DECOMPRESS_AHEAD_H

#include "archive/ready_data.h"

struct ExtractorRun;

// Decompresses a carried archive before its turn, while the one before it is decompressed, verified
// and extracted, and while Java writes its class data. On its turn it is logged, verified and
// extracted like any other. If it could not be decompressed ahead, for whatever reason, that is
// done on its turn. At most one archive is ahead. Its two files lie in a temporary folder of the
// master folder. Nothing is done ahead with one processor, with little space on the disk, or for an
// archive that is too small to be worth it. Logs only the making and the removal of the folder.
// Main thread.
//
// More cannot overlap: the log lines of an archive's extraction follow those of the runtime's
// publication, and the runtime is published under another path than the one its java writes the
// class data to.

// The smallest compressed archive that is decompressed ahead, in bytes.
constexpr long SMALLEST_AHEAD = 1L << 20;

// Starts the LZMA tool on the archive after the one at the position of run.tailStream, if it is
// there already. The position stays.
void beginNextAhead(ExtractorRun& run);

// If the archive at the position of run.tailStream was begun ahead, waits for the tool. Returns
// whether `*ready` has what it made, whose paths live until the next call of any function here.
[[nodiscard]] bool takeAhead(ExtractorRun& run, ReadyData* ready);

// Kills the tool if it is running, and removes the folder. Handles no events, so that a process
// that is ending may call it. Called also when the user quits.
void endAhead();

#endif
