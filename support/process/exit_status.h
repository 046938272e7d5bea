#ifndef QUORVANE_SUPPORT_PROCESS_EXIT_STATUS_H
#define QUORVANE_SUPPORT_PROCESS_EXIT_STATUS_H

// The process's exit statuses, besides the result of the Java program's launch.

// A start-up or extraction step failed for good.
constexpr int EXIT_STATUS_FAILURE = 1;

// Exit status of a Java runtime's compatibility probe if the runtime suits the application.
constexpr int EXIT_STATUS_COMPATIBLE = 72;

// The launch-properties file could not be written.
constexpr int EXIT_STATUS_PROPERTIES_NOT_WRITTEN = 99;

// Exit statuses of `--install` if it installs nothing, besides EXIT_STATUS_FAILURE.
constexpr int EXIT_STATUS_WRONG_USAGE = 2;
constexpr int EXIT_STATUS_NOT_NEWER = 3;          // than the newest complete version
constexpr int EXIT_STATUS_SIGNATURE_REFUSED = 4;  // wrong, or missing
constexpr int EXIT_STATUS_ARCHIVE_REFUSED = 5;    // damaged, or another component's
constexpr int EXIT_STATUS_BUSY = 6;               // another installer did not end within a minute

// Exit status of the installer's decompressor lzma64 if the disk is full.
constexpr int EXIT_STATUS_LZMA_DISK_FULL = 3;

// unpack200 produced nothing.
constexpr int EXIT_STATUS_UNPACK200_FAILED = 101;

#endif
