#ifndef QUORVANE_PLATFORM_GNUSTEP_TEXT_GUARD_H
#define QUORVANE_PLATFORM_GNUSTEP_TEXT_GUARD_H

// GNUstep makes objects of the process's words and variables when it is loaded, and ends the
// process over one that is not UTF-8. What it sees has a question mark in the place of every such
// byte; the process itself gets back what it was started with before main() runs.

// Returns a new null-terminated array of new texts: copies of `words`, with a question mark in the
// place of every byte that is not part of a UTF-8 character. The caller owns all of it.
char** allocReadableWords(char** words);

#endif
