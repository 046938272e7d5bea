#ifndef QUORVANE_PLATFORM_GNUSTEP_QUIET_START_H
#define QUORVANE_PLATFORM_GNUSTEP_QUIET_START_H

// Wraps the creation of the application object: makes it fast, and undoes its effects on the
// process. Main thread, while it is the only one.
void beginQuietStart();
void endQuietStart();

#endif
