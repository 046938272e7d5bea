#ifndef QUORVANE_PLATFORM_GNUSTEP_TEXT_GUARD_H
#define QUORVANE_PLATFORM_GNUSTEP_TEXT_GUARD_H

// When loaded, GNUstep makes objects of the process's arguments and environment variables, and ends
// the process if one is not UTF-8. It sees a question mark in place of every such byte; the process
// itself gets the original texts back before main() runs.

// Returns a new null-terminated array of new texts: copies of `words`, with a question mark in
// place of every byte that is not part of a UTF-8 character. The caller owns all of it.
char** allocReadableWords(char** words);

#endif
