// Logs as the executables do, without any toolkit in the process: begins the process, opens a log
// file in the master folder FOLDER, logs a line, waits until the file GO exists, and logs 1000
// lines more. Usage: pipe_driver FOLDER GO

#include <unistd.h>

#include <cstdio>

#include "support/log/logging.h"
#include "support/log/system_log.h"
#include "support/process/process_start.h"

// Where the system log goes on a Mac nobody can go away.
void writeSystemLog(const char*) {}

int main(int argc, char** argv) {
  beginProcess();
  if (argc != 3) {
    return 2;
  }
  setupFileLogging(argv[1]);
  logMessage("[Driver] first\n");
  while (access(argv[2], F_OK) != 0) {
    usleep(5000);
  }
  for (int i = 0; i < 1000; ++i) {
    logMessage("[Driver] line %d\n", i);
  }
  logError("[Driver] last\n");
  closeLoggedFile();
  return 0;
}
