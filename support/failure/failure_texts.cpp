#include "support/failure/failure_texts.h"

namespace {

// In both sentences "%" is replaced by the application's name.
struct FailureTexts {
  Failure failure;
  const char* message;
  const char* advice;
};

constexpr char kDownloadAgain[] = "Download it again, and open the new copy.";
constexpr char kInstallAgain[] = "Install % again.";
constexpr char kAskTheMaker[] = "Ask whoever you got it from for a corrected version.";
constexpr char kFreeSpace[] = "Free some space on the disk, and open it again.";

constexpr FailureTexts kTexts[] = {
    {Failure::BundleIncomplete, "% cannot be opened because some of its own files are missing.",
     kDownloadAgain},
    {Failure::BundleUnusable, "% cannot be opened because it was not put together correctly.",
     kAskTheMaker},
    {Failure::NoHomeFolder, "% cannot be opened because your account has no home folder.",
     "Log in with another account, and open it again."},
    {Failure::NoWindowSystem, "% cannot be opened because there is no screen to show it on.",
     "Log in at the screen, and open it again."},
    {Failure::FolderNotWritable, "% could not write into its folder.",
     "Ask the administrator of this computer for permission to install it."},
    {Failure::DiskFull, "There is not enough space on the disk for %.", kFreeSpace},
    {Failure::ArchiveDamaged, "% was not installed because the installer is damaged.",
     kDownloadAgain},
    {Failure::SignatureRefused,
     "% was not installed because its maker's signature is missing or wrong.",
     "Do not use this installer, and download a new one from the maker."},
    {Failure::NotUnpacked, "A part of % could not be unpacked.",
     "Make sure that there is space on the disk; if there is, download the installer again."},
    {Failure::DownloadFailed, "The Java runtime that % needs could not be downloaded.",
     "Check your Internet connection, and open the installer again."},
    {Failure::NotInstalled, "% is not installed.", "Open its installer first."},
    {Failure::InstallationFailed, "% could not be installed.",
     "Open the installer again; if that does not help, ask whoever you got it from."},
    {Failure::NoRuntime, "% cannot be opened because its Java runtime is missing.", kInstallAgain},
    {Failure::JavaNotStarted, "The Java runtime of % could not be started.", kInstallAgain},
    {Failure::NoMainClassNamed, "% cannot be opened because it was not told which program to run.",
     kInstallAgain},
    {Failure::MainClassMissing, "% cannot be opened because its main program is missing.",
     kInstallAgain},
    {Failure::InstallationDamaged, "% cannot be opened because its installation is damaged.",
     "Move the folder Quorvane-% to the trash, and install it again."},
    {Failure::NotStarted, "% could not be started.",
     "Close some other programs, and open it again."},
};

}  // namespace

static const FailureTexts& textsOf(Failure failure) {
  for (const FailureTexts& texts : kTexts) {
    if (texts.failure == failure) {
      return texts;
    }
  }
  return textsOf(Failure::NotStarted);
}

static std::string withName(const char* sentence, const std::string& name) {
  std::string text;
  for (const char* c = sentence; *c != 0; ++c) {
    text += *c == '%' ? name : std::string(1, *c);
  }
  return text;
}

std::string failureMessage(Failure failure, const std::string& name) {
  return withName(textsOf(failure).message, name);
}

std::string failureAdvice(Failure failure, const std::string& name, const std::string& logFile) {
  const std::string advice = withName(textsOf(failure).advice, name);
  return logFile.empty() ? advice : advice + "\n\nThe log file is " + logFile;
}
