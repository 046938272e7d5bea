#ifndef QUORVANE_LAUNCH_LAUNCH_STEPS_H
#define QUORVANE_LAUNCH_LAUNCH_STEPS_H

#include "launch/launch.h"

// The steps of a launch, in execution order. Each continues to read the launch file where the
// previous step stopped. A launch that does not fit its lists and buffers ends the process with
// status 1 after one error line.

// Opens the launch file and reads the fields up to the memory settings. Ends the process with
// status 1 if it cannot be opened.
void readLaunchFileHead(Launch* launch);

// Determines the runtime, the executable to start and the options file to read. To start the
// application on a private runtime, makes the copy of its Java executable that has the
// application's name; ends the process with status 1 if there is no private runtime.
void chooseExecutable(Launch* launch);

// Adds the executable and the memory options.
void beginCommandLine(Launch* launch);

// Reads the class path's entries and adds them in both forms.
void addClassPath(Launch* launch);

// Makes the properties buffer: the caller's properties and those of this launch.
void createProperties(Launch* launch);

// Adds the JVM options that last worked with the private runtime, if its options file can be read.
// Whatever that file contains, the launch goes on: anything that is not an option, or does not fit,
// is logged and left out. Options for the JVM's host are left out of the command line if the
// platform's "java" would refuse them.
void addRememberedOptions(Launch* launch);

// Writes the properties into a new file in the application's folder. Ends the process with
// EXIT_STATUS_PROPERTIES_NOT_WRITTEN if all retries fail.
void writePropertiesFile(Launch* launch);

// Adds the main class's slot and the properties file's path.
void addMainClass(Launch* launch);

// Reads the launch file's arguments for the main class and adds them.
void addExtraArguments(Launch* launch);

// Reads the fields that only newer launch files have, and determines the main class of a
// compatibility probe from them.
void readNewerFields(Launch* launch);

// Adds the arguments of this process's command line and logs what will be started.
void addCommandLineArguments(Launch* launch);

// Starts the application or the probe, and returns what launchFromLaunchFile() does.
int startLaunch(Launch* launch);

// Adds a property to the launch's buffer, or ends the process with status 1 if it does not fit.
void addStatic(Launch* launch, const char* key, const char* value);
void addDynamic(Launch* launch, const char* key, const char* value);

#endif
