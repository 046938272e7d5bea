#ifndef QUORVANE_LAUNCH_LAUNCH_STEPS_H
#define QUORVANE_LAUNCH_LAUNCH_STEPS_H

#include "launch/launch.h"

// The steps of a launch, in the order in which they run. Each reads on in the launch file where the
// step before stopped. What does not fit ends the process with status 1 after one error line.

// Opens the launch file and reads the fields up to the memory settings. Ends the process with
// status 1 when it cannot be opened.
void readLaunchFileHead(Launch* launch);

// Settles the runtime, the executable to start and the options file to read. Starting the
// application on a private runtime makes the copy of its Java executable that bears the
// application's name, and ends the process with status 1 when there is no private runtime.
void chooseExecutable(Launch* launch);

// Adds the executable and the memory options.
void beginCommandLine(Launch* launch);

// Reads the class path's entries and adds them in both forms.
void addClassPath(Launch* launch);

// Makes the properties buffer: the caller's properties and those of this launch.
void createProperties(Launch* launch);

// Adds the JVM options that last worked with the private runtime, where its options file can be
// read. Whatever that holds, the launch goes on: whatever is not an option, or does not fit, is
// logged and left out. Of those for the JVM's host the command line gets none that the platform's
// "java" would refuse.
void addRememberedOptions(Launch* launch);

// Writes the properties into a new file in the application's folder. Ends the process with
// EXIT_STATUS_PROPERTIES_NOT_WRITTEN when that fails for good.
void writePropertiesFile(Launch* launch);

// Adds the main class's slot and the properties file's path.
void addMainClass(Launch* launch);

// Reads the launch file's arguments for the main class and adds them.
void addExtraArguments(Launch* launch);

// Reads the fields that only newer launch files have, and settles the main class of a compatibility
// probe with them.
void readNewerFields(Launch* launch);

// Adds the arguments of this process's command line and logs what will be started.
void addCommandLineArguments(Launch* launch);

// Starts what the launch is for and returns what launchFromLaunchFile() does.
int startLaunch(Launch* launch);

// Adds a property to the launch's buffer, or ends the process with status 1 when it does not fit.
void addStatic(Launch* launch, const char* key, const char* value);
void addDynamic(Launch* launch, const char* key, const char* value);

#endif
