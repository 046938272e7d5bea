#ifndef QUORVANE_LAUNCHER_INSTALLATION_TAIL_MARKER_H
#define QUORVANE_LAUNCHER_INSTALLATION_TAIL_MARKER_H

// The delimiter in front of a Tail record that was appended to an executable. Its bytes never stand
// together in a file that is built from these sources, or the search for the record would stop
// there: they are put together at run time.

// Size of the marker in bytes. No byte ends it.
constexpr int TAIL_MARKER_SIZE = 128;

// The process's copy of the marker, kept for its whole life; null until a flow has set it.
extern char* marker;

// Returns a new block, owned by the caller, that holds the marker. Any thread.
char* allocAndInitMarker();

#endif
