#ifndef QUORVANE_SUPPORT_LOG_SYSTEM_LOG_H
#define QUORVANE_SUPPORT_LOG_SYSTEM_LOG_H

// Writes `text` to the system log through NSLog. Text that is not UTF-8 is taken byte by byte as
// Latin-1, so that no message is lost. Failures are ignored. Any thread.
void writeSystemLog(const char* text);

#endif
