#ifndef QUORVANE_PLATFORM_ENVIRONMENT_H
#define QUORVANE_PLATFORM_ENVIRONMENT_H

// Returns the process's environment block, a null-terminated array of "NAME=value" texts. The
// block belongs to the process and is not freed. Any thread, as long as none changes it.
char** getEnvP();

#endif
