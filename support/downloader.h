#ifndef QUORVANE_SUPPORT_DOWNLOADER_H
#define QUORVANE_SUPPORT_DOWNLOADER_H

// Downloads `url` (http or https) to the file `targetPath`, running the calling thread's run loop
// until the transfer has ended. Progress and failures are written to the system log only.
//
// Always returns 1; the caller judges by the file. A file that stands at `targetPath` is removed
// first, and the new one appears there only when it is complete, in one step: afterwards a file
// stands there if and only if the transfer succeeded. An answer with an error status is a failure.
// Where the folder cannot be written to, an old file stays and the transfer fails. Any thread.
int downloadFile(const char* url, const char* targetPath);

#endif
