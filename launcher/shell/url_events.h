#ifndef QUORVANE_LAUNCHER_SHELL_URL_EVENTS_H
#define QUORVANE_LAUNCHER_SHELL_URL_EVENTS_H

// URLs that the application is asked to open. The latest one wins.

// Registers the process's URL handler for open-URL events, in the place of any other. The first
// call creates the handler and writes one line to the system log. createApplication(), or the
// application's delegate whenever the application finishes launching, calls it; the URL that
// started the application is delivered after that. Main thread.
void registerOSXEventListener();

// Returns the latest requested URL as UTF-8 text, or null when there was none or when
// registerOSXEventListener() has not run. The text stays valid for good, also after a later URL has
// replaced it; the caller does not free it. Writes the answer to the system log. Any thread.
const char* getRequestedURL();

#endif
