#ifndef QUORVANE_EXTRACTOR_TAIL_STREAM_H
#define QUORVANE_EXTRACTOR_TAIL_STREAM_H

struct ExtractorRun;

// The Tail record as the Extractor reads it: eleven fields, and behind them, in the same stream,
// the archives that the installer carries. Main thread.

// Opens the Tail record behind the marker in the executable, or else the file "Tail" of the
// bundle's resources. When neither can be opened the process ends with status 1 after a logged
// line.
void openTailStream(ExtractorRun& run);

// Reads the fields. A version or name that cannot be part of a folder's name ends the process with
// status 1 after a logged line.
void readTailFields(ExtractorRun& run);

// What became of the next archive of the stream.
enum class Extraction {
  Done,      // extracted, or an empty placeholder
  Missing,   // the stream ended before it
  Rejected,  // its signature is wrong: the destination is gone
};

// Extracts the next archive of the Tail stream into the folder `destination`. `unpack200` is the
// path of that tool, or null. Damaged data ends the process (archive/archive.h).
[[nodiscard]] Extraction extractNextArchive(ExtractorRun& run, const char* unpack200,
                                            const char* destination);

// Does the same, and ends the process with status 1 and a logged error line that names `component`
// unless the archive was extracted. What stands of `destination` is removed first.
void requireNextArchive(ExtractorRun& run, const char* component, const char* unpack200,
                        const char* destination);

// Closes the Tail stream.
void closeTailStream(ExtractorRun& run);

#endif
