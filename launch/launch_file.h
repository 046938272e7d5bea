#ifndef QUORVANE_LAUNCH_LAUNCH_FILE_H
#define QUORVANE_LAUNCH_LAUNCH_FILE_H

#include <cstdio>
#include <string>

// The name of the launch file in the folder of an updater or an application.
inline constexpr char LAUNCH_FILE_NAME[] = "QuorvaneLaunch";

// Returns, as a constant text, why no launch from the launch file at `path` can work: it is
// missing, not a regular file or not readable, it ends before the arguments that a launch reads, or
// it names no main class. Returns null if a launch may work, including if the system cannot tell,
// as after a read error. Logs and prints nothing. Any thread.
const char* flawOfLaunchFile(const char* path);

// Returns one text field of a launch file or an options file, read with the default limit.
std::string readText(FILE* stream, const char* name);

#endif
