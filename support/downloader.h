#ifndef QUORVANE_SUPPORT_DOWNLOADER_H
#define QUORVANE_SUPPORT_DOWNLOADER_H

// Downloads `url` (http or https) to the file `targetPath`, running the calling thread's run loop
// until the transfer has ended; on the main thread of an application its events are answered
// meanwhile and the splash is kept alive. Progress and failures are written to the system log only.
//
// Always returns 1; the caller judges by the file. A file that stands at `targetPath` is removed
// first: afterwards one stands there if and only if the transfer succeeded, except that an old one
// stays, and the transfer fails, where the folder cannot be written to. An answer with an error
// status is a failure. Whether the file grows at its place or appears there complete is the
// platform's; a failed transfer leaves none on any. Any thread.
int downloadFile(const char* url, const char* targetPath);

#endif
