#include "archive/remove_destination.h"

#include "support/exit_status.h"
#include "support/failure.h"
#include "support/file_kind.h"
#include "support/file_operations.h"
#include "support/logging.h"

void removeDestination(const Destination& destination) {
  const bool isGone = destination.folder.isOpen() ? removeTree(destination.folder, destination.path)
                                                  : isKnownMissing(destination.path);
  if (!isGone) {
    logMessage("[ExtractArchive] *************************** Unable to remove folder %s\n",
               destination.path);
    failProcess(EXIT_STATUS_FAILURE, failureOfWriting(0, destination.path));
  }
}
