#ifndef QUORVANE_TESTS_MACOS_RUN_SUPPLY_TRACE_H
#define QUORVANE_TESTS_MACOS_RUN_SUPPLY_TRACE_H

namespace macrun {

// What an executable has used. Where MACRUN_TRACE is in the environment, it names a file that gets
// the line "run PATH" at the start of each process, and "import NAME" or "selector NAME" at the
// first use of each. A line is written at once and in one piece, so that many processes can share
// the file. A file that cannot be written to is left alone.

bool isTracing();

// Appends a line. Any thread.
void traceUse(const char* kind, const char* name);

// Whether the file holds that line.
bool isInTrace(const char* kind, const char* name);

}  // namespace macrun

#endif
