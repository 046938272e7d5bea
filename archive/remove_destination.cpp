#include "archive/remove_destination.h"

#include "platform/process_end.h"
#include "support/exit_status.h"
#include "support/file_operations.h"
#include "support/logging.h"

void removeDestination(const char* destDir) {
  if (!removeTree(destDir)) {
    logMessage("[ExtractArchive] *************************** Unable to remove folder %s\n",
               destDir);
    endProcess(EXIT_STATUS_FAILURE);
  }
}
