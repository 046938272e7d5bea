#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "extractor/run/run.h"
#include "extractor/runtime/adoptable_home.h"
#include "extractor/runtime/java_version.h"
#include "extractor/runtime/jre_layout.h"
#include "extractor/runtime/provision_jre.h"
#include "extractor/runtime/run_command.h"
#include "extractor/versions/folders.h"
#include "extractor/versions/hand_over.h"
#include "extractor/versions/startable.h"
#include "support/failure/failure.h"
#include "support/files/file_kind.h"
#include "support/files/file_operations.h"
#include "support/files/paths.h"
#include "support/log/logging.h"
#include "support/process/exit_status.h"
#include "support/text/strings.h"

// A system runtime that may be adopted.
struct SystemJre {
  std::string home;
  std::string java;
  std::string unpack200;
};

// Version of an adopted runtime: every carried or downloaded one counts as newer.
static const char kAdoptedVersion[] = "00000000000";
static const char kPluginHome[] = "/Library/Internet Plug-Ins/JavaAppletPlugin.plugin";
static const int kMostLinks = 40;

// Writes the path of the Java executable that the shell finds into `candidate`; false if the shell
// cannot be run.
static bool askShell(const ExtractorRun& run, char* candidate) {
  char* answer = runCommandGetOutput("sh -c \"which java\"");
  if (run.dynamic.autotest) {
    free(answer);
    answer = allocCopy("/opt/JRE_QVAutoTest/bin/java");
    logMessage("AutoTesting - will fake possible jave exe to '%s'\n", answer);
  }
  if (answer == nullptr) {
    return false;
  }
  setPath(candidate, answer);
  free(answer);
  logMessage("[JRESearch] 'which java' returned '%s'\n", candidate);
  return true;
}

// Replaces `candidate` by its target as long as it is a link. A relative target is used unchanged,
// not relative to the link's folder.
static void followLinks(char* candidate) {
  for (int i = 0; i < kMostLinks; ++i) {
    char target[PATH_BUFFER_SIZE] = "";
    const ssize_t length = readlink(candidate, target, sizeof target - 1);
    if (length < 0) {
      return;
    }
    logMessage("[JRESearch] Followed link %s -> %s\n", candidate, target);
    setPath(candidate, target);
  }
  logMessage("[JRESearch] Followed %d links, will not follow any more\n", kMostLinks);
}

// Cuts `candidate` at its last "bin", and the slash before it.
static void trimToHome(char* candidate) {
  logMessage("[JRESearch] Searching for 'bin' occurrence\n");
  char* bin = nullptr;
  for (char* next = strstr(candidate, "bin"); next != nullptr; next = strstr(next + 1, "bin")) {
    bin = next;
  }
  logMessage("[JRESearch] Done searching for 'bin'\n");
  if (bin != nullptr) {
    *bin = 0;
    logMessage("[JRESearch] Trimmed possibleJavaExe is %s\n", candidate);
    const size_t length = strlen(candidate);
    if (length > 0 && candidate[length - 1] == '/') {
      candidate[length - 1] = 0;
      logMessage("[JRESearch] Removed final slash: possibleJavaExe is %s\n", candidate);
    }
  }
  logMessage("[JRESearch] Final possibleJavaExe is %s\n", candidate);
}

static bool isAcceptable(const ExtractorRun& run, const SystemJre& jre) {
  logMessage("[JRESearch] Looking at JRE %s\n", jre.java.c_str());
  return doesFileExist(jre.java.c_str()) && doesFileExist(jre.unpack200.c_str()) &&
         jreMatchesVersionRequirement(jre.java.c_str(), run.tail.requiredJavaVersion) &&
         isAdoptableHome(jre.home.c_str());
}

// The runtime to copy from `home`, with its tools in the folder `bin` of it.
static SystemJre systemJre(const std::string& home, const char* bin) {
  const std::string tools = childPath(home, bin);
  return {home, childPath(tools, "java"), childPath(tools, "unpack200")};
}

static bool findSystemJre(const ExtractorRun& run, SystemJre* jre) {
  char candidate[PATH_BUFFER_SIZE];
  if (!askShell(run, candidate)) {
    return false;
  }
  followLinks(candidate);
  trimToHome(candidate);
  *jre = systemJre(candidate, "bin");
  if (isAcceptable(run, *jre)) {
    return true;
  }
  logMessage("[JRESearch] A JRE does not seem to exist here.\n");
  *jre = systemJre(kPluginHome, "Contents/Home/bin");
  if (isAcceptable(run, *jre)) {
    return true;
  }
  logMessage("[JRESearch] JRE does not exist or does not have unpack200\n");
  return false;
}

// Has the installed updater's compatibility class judge the runtime.
static bool passesTrialLaunch(const ExtractorRun& run, const SystemJre& jre) {
  logMessage("[JRESearch] JRE unpack200 exists %s\n", jre.java.c_str());
  char* latestGU = allocUpdaterToLaunch(run.masterFolder);
  if (latestGU == nullptr) {
    logMessage(
        "[JRESearch] ****************************** No latest App version even after download!\n");
    failProcess(EXIT_STATUS_FAILURE, Failure::InstallationFailed);
  }
  const int status = probeSystemJava(run, latestGU, jre.java.c_str());
  free(latestGU);
  if (status != EXIT_STATUS_COMPATIBLE) {
    logMessage("[JRESearch] JRE failed compatibility test\n");
    return false;
  }
  return true;
}

// Runs a system tool without a shell; the log shows `text`, the equivalent shell command.
static void runTool(const std::string& text, const char* const* argv) {
  logMessage("[JRESearch] Running %s\n", text.c_str());
  runQuietly(argv);
}

static void copyJre(const SystemJre& jre, const char* to) {
  const std::string bin = childPath(to, "bin");
  // The folder already exists: it must become the home itself, not contain it.
  const std::string contents = jre.home + "/.";
  const char* const copy[] = {"/bin/cp", "-LRf", "--", contents.c_str(), to, nullptr};
  const char* const open[] = {"/bin/chmod", "-R", "755", bin.c_str(), nullptr};
  runTool("cp -LRf \"" + jre.home + "\" \"" + to + "\"", copy);
  runTool("chmod -R 755 \"" + bin + "\"", open);
}

// Returns whether the copy's Java executable, in a plain home or in a bundle, runs.
static bool copyWorks(const char* copy) {
  const bool isHome = holdsJava(copy);
  const std::string java = childPath(copy, isHome ? "bin/java" : "Contents/Home/bin/java");
  const char* const argv[] = {java.c_str(), "-version", nullptr};
  return isExecutable(java.c_str()) && runQuietly(argv) == 0;
}

bool adoptSystemJre(ExtractorRun& run) {
  SystemJre jre;
  if (!findSystemJre(run, &jre) || !passesTrialLaunch(run, jre)) {
    return false;
  }
  logMessage("[JRESearch] JRE is valid, copying...\n");
  nameTempFolder(run.masterFolder, run.jreTemp);
  if (createTempFolder(run.masterFolder, run.jreTemp) != 0) {
    logMessage("[JRESearch] Unable to create %s\n", run.jreTemp);
    return false;
  }
  static_assert(sizeof kAdoptedVersion <= sizeof run.jreVersion, "the version fits its buffer");
  memcpy(run.jreVersion, kAdoptedVersion, sizeof kAdoptedVersion);
  copyJre(jre, run.jreTemp);
  if (!copyWorks(run.jreTemp)) {
    logMessage("[JRESearch] The copied JRE does not run\n");
    removeTree(run.jreTemp);
    run.jreVersion[0] = 0;
    return false;
  }
  return true;
}
