#include "archive/remove_destination.h"

#include "support/failure/failure.h"
#include "support/files/file_kind.h"
#include "support/files/file_operations.h"
#include "support/log/logging.h"
#include "support/process/exit_status.h"

void removeDestination(const Destination& destination) {
  const bool isGone = destination.folder.isOpen() ? removeTree(destination.folder, destination.path)
                                                  : isDefinitelyMissing(destination.path);
  if (!isGone) {
    logMessage("[ExtractArchive] *************************** Unable to remove folder %s\n",
               destination.path);
    failProcess(EXIT_STATUS_FAILURE, failureOfWriting(0, destination.path));
  }
}
