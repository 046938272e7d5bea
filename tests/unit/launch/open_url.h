#ifndef QUORVANE_TESTS_UNIT_LAUNCH_OPEN_URL_H
#define QUORVANE_TESTS_UNIT_LAUNCH_OPEN_URL_H

// Registers the product's handler for open-URL events and hands it such an event.
void openUrl(const char* url);

#endif
