#include "extractor/installation/install_component.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "extractor/archives/component_archive.h"
#include "extractor/archives/tail_stream.h"
#include "extractor/installation/complete_versions.h"
#include "extractor/installation/install_app.h"
#include "extractor/installation/install_updater.h"
#include "extractor/installation/interrupted_runs.h"
#include "extractor/run/names.h"
#include "extractor/run/params_file.h"
#include "extractor/run/run.h"
#include "extractor/run/start_up.h"
#include "extractor/runtime/jre_layout.h"
#include "extractor/runtime/jre_temp.h"
#include "extractor/runtime/provision_jre.h"
#include "extractor/runtime/run_command.h"
#include "extractor/versions/folders.h"
#include "extractor/versions/install_lock.h"
#include "extractor/versions/temp_marks.h"
#include "formats/names.h"
#include "launcher/installation/version_folders.h"
#include "platform/process_end.h"
#include "support/failure/failure.h"
#include "support/files/file_operations.h"
#include "support/files/folder_walk.h"
#include "support/files/paths.h"
#include "support/log/logging.h"
#include "support/owned.h"
#include "support/process/exit_status.h"

static const char kInstallWord[] = "--install";

namespace {

enum class Kind { Application, Updater, Runtime, Unknown };

// One of this process's own. It is held open, since another installer may make a folder of that
// name once it is gone.
struct TempFolder {
  char path[PATH_BUFFER_SIZE] = "";
  Descriptor folder;
};

struct Request {
  const char* component = "";
  const char* version = "";
  const char* archive = "";
  Kind kind = Kind::Unknown;
  const char* reason = nullptr;  // why it is refused, where no Failure says it
  TempFolder work;               // for what is done to the archive
  TempFolder content;            // becomes the version folder
};

struct Ending {
  Failure failure;
  int status;
  const char* reason;
};

constexpr char kBadArchive[] = "its archive is damaged, or another component's";
constexpr char kBadBundle[] = "the installer's own bundle is damaged";

constexpr Ending kEndings[] = {
    {Failure::SignatureRefused, EXIT_STATUS_SIGNATURE_REFUSED,
     "the signature of its archive is missing or wrong"},
    {Failure::ArchiveDamaged, EXIT_STATUS_ARCHIVE_REFUSED, kBadArchive},
    {Failure::NotUnpacked, EXIT_STATUS_ARCHIVE_REFUSED, kBadArchive},
    {Failure::DiskFull, EXIT_STATUS_FAILURE, "the disk is full"},
    {Failure::FolderNotWritable, EXIT_STATUS_FAILURE, "the application's folder cannot be written"},
    {Failure::BundleIncomplete, EXIT_STATUS_FAILURE, kBadBundle},
    {Failure::BundleUnusable, EXIT_STATUS_FAILURE, kBadBundle},
};

}  // namespace

// Never destroyed: the process may end while a step is at it.
static Request& currentRequest = *new Request;

bool isInstallRequest(int argc, char* const* argv) {
  return argc >= 2 && strcmp(argv[1], kInstallWord) == 0;
}

// What a failure in the steps of an installation means here.
static const Ending& endingOf(Failure failure) {
  static constexpr Ending kOther = {Failure::InstallationFailed, EXIT_STATUS_FAILURE,
                                    "a step of the installation failed"};
  for (const Ending& ending : kEndings) {
    if (ending.failure == failure) {
      return ending;
    }
  }
  return kOther;
}

static void removeTempFolder(TempFolder* temp) {
  if (temp->folder.isOpen()) {
    removeTree(temp->folder, temp->path);
    temp->folder.reset(-1);
  }
}

// The only line on standard output, and the last one of the log.
static void sayResult(const std::string& line) {
  logMessage("[Install] %s\n", line.c_str());
  puts(line.c_str());
}

static int endOfRequest(int status, Failure failure) {
  setEndOfFailures(nullptr);
  removeTempFolder(&currentRequest.work);
  removeTempFolder(&currentRequest.content);
  const Ending& ending = endingOf(failure);
  const std::string component = currentRequest.component;
  const std::string what = component.empty() ? "" : component + " " + currentRequest.version + ": ";
  const bool isRefused = currentRequest.reason != nullptr;
  sayResult("Not installed: " + what + (isRefused ? currentRequest.reason : ending.reason));
  return isRefused ? status : ending.status;
}

[[noreturn]] static void refuse(int status, const char* reason) {
  currentRequest.reason = reason;
  failProcess(status, Failure::InstallationFailed);
}

static bool isVersionNumber(const char* text) {
  constexpr size_t kMostDigits = 18;
  const size_t length = strlen(text);
  return length >= 1 && length <= kMostDigits && text[strspn(text, "0123456789")] == 0 &&
         (text[0] != '0' || length == 1);
}

// Nothing is logged or written yet.
static void readRequest(int argc, char** argv) {
  constexpr int kWords = 5;
  if (argc != kWords || argv[2][0] == 0 || !isVersionNumber(argv[3]) || argv[4][0] == 0) {
    puts("Not installed: usage: --install COMPONENT VERSION ARCHIVE");
    failProcess(EXIT_STATUS_WRONG_USAGE, Failure::NotStarted);
  }
  currentRequest.version = argv[3];
  currentRequest.archive = argv[4];
}

// What the Tail says, and where it leads.
static void openInstallation(ExtractorRun& run, int argc, char** argv) {
  run.executablePath = argv[0];
  run.argumentCount = argc;
  run.arguments = argv;
  run.silent = true;
  resolveWrapperPaths(run);
  readDynamicProperties(run);
  announceTail(run);
  openTailStream(run);
  readTailFields(run);
  loadPublicKey(run);
  findSharedFolder(run);
  nameMasterFolder(run);
  setupInstallLogging(run.masterFolder);
  overrideJreName(run);
  requireDistinctNames(run.jreName, run.tail.appName);
  makeSharedConfigFolder(run);
}

static Kind componentKind(const ExtractorRun& run, const char* component) {
  if (strcmp(component, run.tail.appName) == 0) {
    return Kind::Application;
  }
  if (strcmp(component, UPDATER_NAME) == 0) {
    return Kind::Updater;
  }
  return strcmp(component, run.jreName) == 0 ? Kind::Runtime : Kind::Unknown;
}

static void chooseComponent(const ExtractorRun& run, const char* component) {
  currentRequest.kind = componentKind(run, component);
  if (currentRequest.kind == Kind::Unknown) {
    refuse(EXIT_STATUS_WRONG_USAGE, "this installer has no such component");
  }
  currentRequest.component = component;
}

static void demandSignatures(ExtractorRun& run) {
  run.dynamic.requireSignature = true;
  if (run.trust.key == nullptr) {
    logMessage("[Install] There is no usable public key\n");
    refuse(EXIT_STATUS_SIGNATURE_REFUSED, "the installer has no key to verify its archive with");
  }
  enforceSignatures(run);
}

static void requireNewer(const ExtractorRun& run) {
  long installed = -1;
  if (!findNewestComplete(run.masterFolder, currentRequest.component,
                          currentRequest.kind == Kind::Runtime, &installed)) {
    failRun(Failure::FolderNotWritable, "[Install] Unable to list %s\n", run.masterFolder);
  }
  logMessage("[Install] Newest complete version of %s is %ld\n", currentRequest.component,
             installed);
  if (strtol(currentRequest.version, nullptr, 10) <= installed) {
    refuse(EXIT_STATUS_NOT_NEWER, "it is not newer than what is installed");
  }
}

static void makeTempFolder(const ExtractorRun& run, TempFolder* temp) {
  nameTempFolder(run.masterFolder, temp->path);
  if (createTempFolder(run.masterFolder, temp->path) == 0) {
    temp->folder = openFolderItself(temp->path);
  }
  if (!temp->folder.isOpen()) {
    failRun(failureOfWriting(0, run.masterFolder), "[Install] Unable to create a folder\n");
  }
}

static void requireHeld(const InstallLock& lock) {
  if (lock.isHeldByAnother()) {
    refuse(EXIT_STATUS_BUSY, "another installer is at work");
  }
  if (!lock.isHeld()) {
    failRun(Failure::FolderNotWritable, "[Install] The installers' lock cannot be taken\n");
  }
}

// Under the lock, as another installer would take a folder for abandoned that is made and not yet
// marked. The extraction then needs no lock. What others left goes first: a request that was killed
// when it had published its version is refused when it is made again.
static void makeFolders(const ExtractorRun& run) {
  const InstallLock lock(run.masterFolder, InstallLock::Wait::OneMinute);
  requireHeld(lock);
  finishRuntimesUnderLock(run.masterFolder);
  removeAbandonedTempFolders(run.masterFolder);
  requireNewer(run);
  makeTempFolder(run, &currentRequest.work);
  makeTempFolder(run, &currentRequest.content);
}

// The installer's own tool, or, where it carries none, that of the installed updater.
static void findLzmaTool(ExtractorRun& run) {
  if (carriesUpdater(run)) {
    setPath(run.guTemp, currentRequest.work.path);
    extractLzmaTool(run);
    return;
  }
  const Block<char> updater(pickAndAllocLatestFromMaster(run.masterFolder, UPDATER_NAME));
  if (updater == nullptr) {
    failRun("[Install] There is no tool to decompress the archive with\n");
  }
  setPath(run.lzmaPath, run.masterFolder, updater.get(), "lzma64");
}

// The tool for pack200 entries, a new text or null: a runtime's archive brings its own, the
// application's uses that of the installed runtime.
static char* allocUnpack200(const ExtractorRun& run) {
  if (currentRequest.kind == Kind::Runtime) {
    return getUnpack200Executable(currentRequest.content.path);
  }
  const Block<char> runtime(pickAndAllocLatestFromMaster(run.masterFolder, run.jreName));
  if (currentRequest.kind == Kind::Updater || runtime == nullptr) {
    return nullptr;
  }
  char* path = static_cast<char*>(malloc(PATH_BUFFER_SIZE));
  return setPath(path, run.masterFolder, runtime.get(), "bin", "unpack200");
}

// One for another processor, or a system newer than this, would be noticed by no start that it is
// used for.
static void requireJavaRuns() {
  const Block<char> java(getJavaExecutable(currentRequest.content.path));
  const char* const words[] = {java.get(), "-version", nullptr};
  const int status = runQuietly(words);
  if (status != 0) {
    logMessage("[Install] Its java ended with status %d\n", status);
    refuse(EXIT_STATUS_ARCHIVE_REFUSED, "its java does not run on this machine");
  }
}

// Leaves the verified files in currentRequest.content.
static void extractAside(ExtractorRun& run, const Descriptor& archive) {
  findLzmaTool(run);
  const Block<char> unpack200(allocUnpack200(run));
  extractComponent(run, archive, currentRequest.work.path, unpack200.get(),
                   currentRequest.content.path, currentRequest.component, currentRequest.version);
  if (currentRequest.kind == Kind::Runtime) {
    setPath(run.jreTemp, currentRequest.content.path);
    requireJavaInTemp(run);
    requireJavaRuns();
    regenerateClassData(run);
  } else {
    requireLaunchFile(currentRequest.component, currentRequest.content.path);
  }
  removeTempFolder(&currentRequest.work);
}

static void publish(ExtractorRun& run) {
  const Request& request = currentRequest;
  // From here on the earlier folder may wait under this name, and moveIntoPlace() looks after both.
  currentRequest.content.folder.reset(-1);
  if (request.kind == Kind::Application) {
    setPath(run.appTemp, request.content.path);
    makeAppFolder(run.appFolder, run.masterFolder, request.component, request.version);
    putAppIntoPlace(run);
  } else if (request.kind == Kind::Updater) {
    setPath(run.guTemp, request.content.path);
    makeAppFolder(run.guFolder, run.masterFolder, request.component, request.version);
    installUpdater(run);
  } else {
    makeAppFolder(run.jreFolder, run.masterFolder, request.component, request.version);
    putJreIntoPlace(run);
  }
}

static void publishUnderLock(ExtractorRun& run) {
  const InstallLock lock(run.masterFolder, InstallLock::Wait::OneMinute);
  requireHeld(lock);
  requireNewer(run);  // another installer may have been faster
  publish(run);
  releaseMarks();
}

void installComponent(int argc, char** argv) {
  static ExtractorRun& run = *new ExtractorRun();  // used until the process has ended
  allowAlert(false);
  signal(SIGCHLD, SIG_DFL);  // as in a run that installs: how the tools end has to be seen
  readRequest(argc, argv);
  setEndOfFailures(endOfRequest);
  openInstallation(run, argc, argv);
  chooseComponent(run, argv[2]);
  demandSignatures(run);
  const Descriptor archive = openComponentArchive(currentRequest.archive);
  if (!archive.isOpen()) {
    refuse(EXIT_STATUS_ARCHIVE_REFUSED, "its archive is no regular file that can be read");
  }
  makeFolders(run);
  extractAside(run, archive);
  publishUnderLock(run);
  sayResult(std::string("Installed ") + currentRequest.component + " " + currentRequest.version);
  endProcess(0);
}
