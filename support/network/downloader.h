#ifndef QUORVANE_SUPPORT_NETWORK_DOWNLOADER_H
#define QUORVANE_SUPPORT_NETWORK_DOWNLOADER_H

// Downloads `url` (http or https) to the file `targetPath`, running the calling thread's run loop
// until the transfer has ended; on the main thread of an application its events are answered
// meanwhile and the splash is kept alive. Progress and failures are written to the system log only.
//
// Always returns 1; the caller judges by the file. A file that stands at `targetPath` is removed
// first: afterwards one stands there if and only if the transfer succeeded, except that an old one
// stays, and the transfer fails, where the folder cannot be written to. An answer with an error
// status is a failure, and so is a transfer that brings next to nothing. Whether the file grows at
// its place or appears there complete is the platform's; a failed transfer leaves none on any, nor
// does one on the main thread in the middle of which the user quits. Any thread.
int downloadFile(const char* url, const char* targetPath);

// The same for a file of `mostBytes` at most: a transfer that brings more is given up and leaves
// nothing.
int downloadFile(const char* url, const char* targetPath, int mostBytes);

// A transfer that brings less than LEAST_BYTES in this many seconds is given up: 60. Tests alone
// put a shorter time in its place.
extern double slowTransferSeconds;
constexpr int LEAST_BYTES = 1024;

#endif
