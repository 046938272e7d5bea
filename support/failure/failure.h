#ifndef QUORVANE_SUPPORT_FAILURE_FAILURE_H
#define QUORVANE_SUPPORT_FAILURE_FAILURE_H

// The one way in which the product ends after a failure. Where the desktop started the process, so
// that nobody sees its output, an alert says what failed, what to do, and where the log file is.

// What may end the process. The sentences for each are in failure_texts.cpp.
enum class Failure {
  BundleIncomplete,     // a file of the bundle itself is missing or cannot be read
  BundleUnusable,       // what the bundle says cannot be followed
  NoHomeFolder,         // the account has none
  NoWindowSystem,       // which also means that no alert can be shown
  FolderNotWritable,    // the application's folder, or something in it
  DiskFull,             // of the same
  ArchiveDamaged,       // an archive was cut, or holds what no archive may
  SignatureRefused,     // an archive's signature is wrong, or missing where one is required
  NotUnpacked,          // a tool did not decompress or unpack an entry
  DownloadFailed,       // of a Java runtime
  NotInstalled,         // nothing is installed, and nothing carried that could be
  InstallationFailed,   // any other step of an installation
  NoRuntime,            // no Java runtime is installed
  JavaNotStarted,       // the runtime's JVM cannot be loaded or created
  NoMainClassNamed,     // the command line names no class
  MainClassMissing,     // the class, or its main(), is not on the class path
  InstallationDamaged,  // the installed application's launch file is missing or unusable
  NotStarted,           // the system refused a thread or a process
};

// Ends the process with `status`, as endProcess() does, after the failure has been logged. Shows
// the alert first where isStartedByDesktop() and nobody has switched alerts off; then the splash is
// hidden, and the process ends when the alert is closed. Never returns. Any thread; from another
// than the main thread the alert comes up when that one serves its event loop, and is given up
// where it does not do so within ten seconds.
[[noreturn]] void failProcess(int status, Failure failure);

// Ends the process with the status of the failProcess() under way, and returns when there is none:
// a Quit that comes while the alert is shown does not turn a failure into a success. Logs nothing.
// Any thread.
void endIfFailing();

// Remembers why the result that a function is about to return is a failure, for endWithResult().
// The latest counts. Any thread, before the thread that ends the process learns of the result.
void noteFailure(Failure failure);

// Ends the process with the result of a launch: 0 as endProcess() does, any other as failProcess()
// with the failure noted last.
[[noreturn]] void endWithResult(int status);

// As endWithResult(), but ends the process with 0, whatever `result` says.
[[noreturn]] void endWithZeroAfter(int result);

// Whether a failure shows an alert: initially yes. A silent or elevated run says no. Main thread.
void allowAlert(bool allowed);

// Returns whether a failure would show an alert, as far as is known without a window system.
[[nodiscard]] bool isAlertAllowed();

// Names the application in the alert; the main bundle's name, or the process's, is used until this
// is called, or where `name` is empty. The text is copied, and cut where it is long.
void setAlertName(const char* name);

// Sets what is called before an alert is shown, which may stay for hours: others must not have to
// wait for what this process holds. Null for nothing. Main thread.
void setBeforeAlert(void (*function)());

// Sets what failProcess() calls first: with the status and the failure that it was given, to learn
// the status that the process is to end with. Null for nothing. Main thread.
void setEndOfFailures(int (*function)(int status, Failure failure));

// Returns which failure it is that something could not be written below the folder `path`, with the
// error number `error`, 0 when that is not known: DiskFull or FolderNotWritable.
[[nodiscard]] Failure failureOfWriting(int error, const char* path);

#endif
