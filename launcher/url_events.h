#ifndef QUORVANE_LAUNCHER_URL_EVENTS_H
#define QUORVANE_LAUNCHER_URL_EVENTS_H

// URLs that the application is asked to open. The latest one wins.

// Creates the process's URL handler and registers it for open-URL events. Main thread, right after
// createApplication(): the URL that started the application is delivered as soon as the event loop
// runs. Writes one line to the system log.
void registerOSXEventListener();

// Returns the latest requested URL as UTF-8 text, or null when there was none or when
// registerOSXEventListener() has not run. The text stays valid for good, also after a later URL has
// replaced it; the caller does not free it. Writes the answer to the system log. Any thread.
const char* getRequestedURL();

#endif
