#ifndef QUORVANE_LAUNCH_LAUNCH_FILE_H
#define QUORVANE_LAUNCH_LAUNCH_FILE_H

#include <cstdio>
#include <string>

// The name of the launch file in the folder of an updater or an application.
inline constexpr char LAUNCH_FILE_NAME[] = "QuorvaneLaunch";

// Returns one text field of a launch file or an options file, read with the default limit.
std::string readText(FILE* stream, const char* name);

#endif
