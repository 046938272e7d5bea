#ifndef QUORVANE_SUPPORT_LOG_FILE_OLD_LOGS_H
#define QUORVANE_SUPPORT_LOG_FILE_OLD_LOGS_H

// Removes log files named `prefix`, a time stamp and ".log" from `folder`, so that `count` are
// left: `current`, and the newest of the others. Only regular files of this process's user are
// considered; links, including `folder` itself, are not followed. Failures are ignored. Logs
// nothing. One thread.
void removeOldLogs(const char* folder, const char* prefix, const char* current, int count);

#endif
