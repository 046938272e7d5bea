#ifndef QUORVANE_FORMATS_TAIL_MARKER_H
#define QUORVANE_FORMATS_TAIL_MARKER_H

// The delimiter before a Tail record appended to an executable. Its bytes never occur in sequence
// in a file built from these sources, because the search for the record would stop there: they are
// assembled at run time.

// Size of the marker in bytes. It has no terminator.
constexpr int TAIL_MARKER_SIZE = 128;

// The process's copy of the marker, kept as long as the process lives; null until a flow has set
// it.
extern char* marker;

// Returns a new block, owned by the caller, with the marker. Any thread.
char* allocAndInitMarker();

#endif
