#ifndef QUORVANE_SUPPORT_NETWORK_DOWNLOADER_H
#define QUORVANE_SUPPORT_NETWORK_DOWNLOADER_H

// Downloads `url` (http or https) to the file `targetPath`, running the calling thread's run loop
// until the transfer has ended; on the main thread of an application its events are handled
// meanwhile and the splash is kept alive. Progress and failures are written only to the system log.
//
// Always returns 1; the caller checks the file. An existing file at `targetPath` is removed first:
// afterwards one exists if and only if the transfer succeeded, except that an old file stays, and
// the transfer fails, if the folder is not writable. An answer with an error status is a failure,
// and so is a stalled transfer. Whether the file grows in place or appears complete depends on the
// platform; a failed transfer leaves no file on any platform, nor does one on the main thread
// during which the user quits. Any thread.
int downloadFile(const char* url, const char* targetPath);

// The same for a file of at most `mostBytes`: a larger transfer is abandoned and leaves nothing.
int downloadFile(const char* url, const char* targetPath, int mostBytes);

// A transfer that brings less than LEAST_BYTES in this many seconds is abandoned: 60. Only tests
// set a shorter time.
extern double slowTransferSeconds;
constexpr int LEAST_BYTES = 1024;

#endif
