#ifndef QUORVANE_SUPPORT_LOG_FILE_OLD_LOGS_H
#define QUORVANE_SUPPORT_LOG_FILE_OLD_LOGS_H

// Removes log files from `folder`, so that `count` are left of those that are named `prefix`, a
// time stamp and ".log": `current`, and the newest of the others. Only regular files of this
// process's user are looked at and removed; links are not followed, `folder` itself included.
// Failures are ignored. Logs nothing. One thread.
void removeOldLogs(const char* folder, const char* prefix, const char* current, int count);

#endif
