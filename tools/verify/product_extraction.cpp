#include "tools/verify/product_extraction.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "archive/archive.h"
#include "tools/system/input_error.h"
#include "tools/system/last_lines.h"
#include "tools/system/quiet_output.h"
#include "tools/system/temporary_folder.h"

namespace fs = std::filesystem;

namespace tools {

static const size_t kShownLines = 3;

static void prepareFolder(const std::string& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (!fs::is_directory(folder)) {
    throw InputError("cannot create the folder " + folder + ": " + error.message());
  }
  if (!fs::is_empty(folder, error)) {
    throw InputError(folder + " is not empty; name a new folder");
  }
}

// Runs the extraction in a child process, whose status it returns.
static int extractInChild(const Extraction& extraction, const std::string& archive,
                          const std::string& log) {
  const QuietOutput quiet(log.c_str());
  const pid_t child = fork();
  if (child == 0) {
    const char* unpack200 = extraction.unpack200.empty() ? nullptr : extraction.unpack200.c_str();
    extractArchive(unpack200, archive.c_str(), extraction.folder.c_str(), extraction.trust);
    fflush(nullptr);
    _exit(0);
  }
  int status = -1;
  while (child > 0 && waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

void extractAsProduct(const Extraction& extraction) {
  prepareFolder(extraction.folder);
  const TemporaryFolder work;
  // The extraction deletes its input: the link, not the archive.
  const std::string link = work / "archive.p2";
  fs::create_symlink(fs::absolute(extraction.archive), link);
  const std::string log = work / "log";
  const int status = extractInChild(extraction, link, log);
  if (status != 0) {
    std::error_code ignored;
    fs::remove_all(extraction.folder, ignored);
    throw InputError(extraction.name +
                     " cannot be extracted; the end of the log:" + lastLines(log, kShownLines));
  }
  if (!fs::exists(extraction.folder)) {
    throw InputError(extraction.name +
                     " has no signature that is valid under this key; nothing "
                     "was kept");
  }
}

}  // namespace tools
