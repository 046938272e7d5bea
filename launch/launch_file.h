#ifndef QUORVANE_LAUNCH_LAUNCH_FILE_H
#define QUORVANE_LAUNCH_LAUNCH_FILE_H

#include <cstdio>
#include <string>

// The name of the launch file in the folder of an updater or an application.
inline constexpr char LAUNCH_FILE_NAME[] = "QuorvaneLaunch";

// Returns what is wrong with the launch file at `path` so that no launch from it can work, as a
// constant text, or null when a launch may work: the file is missing, no file or not readable, it
// ends before the arguments that a launch reads, or it names no main class. Where the system cannot
// tell, as after a read error, a launch may work. Logs and prints nothing. Any thread.
const char* flawOfLaunchFile(const char* path);

// Returns one text field of a launch file or an options file, read with the default limit.
std::string readText(FILE* stream, const char* name);

#endif
