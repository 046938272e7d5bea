#ifndef QUORVANE_SUPPORT_FAILURE_FAILURE_H
#define QUORVANE_SUPPORT_FAILURE_FAILURE_H

// The only way in which the product ends after a failure. If the desktop started the process, so
// that nobody sees its output, an alert says what failed, what to do, and where the log file is.

// The reasons to end the process. Their texts for the user are in failure_texts.cpp.
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

// Ends the process with `status`, as endProcess() does, after the failure has been logged. If
// isStartedByDesktop() and alerts are not switched off, shows the alert first, hides the splash,
// and ends the process when the alert is closed. Never returns. Any thread; on another than the
// main thread the alert appears when the main thread handles its events, and is skipped if it does
// not do so within ten seconds.
[[noreturn]] void failProcess(int status, Failure failure);

// Ends the process with the status of the failProcess() in progress, or returns if there is none: a
// Quit while the alert is shown does not turn a failure into a success. Logs nothing. Any thread.
void endIfFailing();

// Records why the result that a function is about to return is a failure, for endWithResult(). The
// latest reason counts. Any thread, before the thread that ends the process learns the result.
void noteFailure(Failure failure);

// Ends the process with the result of a launch: 0 as endProcess() does, any other as failProcess()
// with the failure noted last.
[[noreturn]] void endWithResult(int status);

// As endWithResult(), but ends the process with 0, whatever `result` is.
[[noreturn]] void endWithZeroAfter(int result);

// Whether a failure shows an alert; initially true. A silent or elevated run sets false. Main
// thread.
void allowAlert(bool allowed);

// Returns whether a failure would show an alert, as far as can be told without a window system.
[[nodiscard]] bool isAlertAllowed();

// Sets the application's name in the alert. Until this is called, or if `name` is empty, the name
// of the main bundle or of the process is used. The text is copied, and truncated if it is too
// long.
void setAlertName(const char* name);

// Sets a function to call before an alert is shown. An alert may stay for hours, and other
// processes must not have to wait for what this process holds. Null for none. Main thread.
void setBeforeAlert(void (*function)());

// Sets a function that failProcess() calls first, with its status and failure; it returns the
// status to end the process with. Null for none. Main thread.
void setEndOfFailures(int (*function)(int status, Failure failure));

// Returns the failure for a failed write below the folder `path` with the error number `error` (0
// if unknown): DiskFull or FolderNotWritable.
[[nodiscard]] Failure failureOfWriting(int error, const char* path);

#endif
