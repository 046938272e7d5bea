#ifndef QUORVANE_LAUNCHER_SHELL_JAVA_END_H
#define QUORVANE_LAUNCHER_SHELL_JAVA_END_H

// The end of the Java program in this process when the user quits the application.

struct JavaVM_;

// Sets the JVM that runs in this process; null if none runs any more. Called by the thread that
// creates and destroys it, right after each.
void setRunningJava(JavaVM_* vm);

// Ends the process as Java's System.exit(0) does, in the background: the shutdown hooks run, then
// the process ends with status 0. The calling thread keeps running its event loop meanwhile,
// because hooks may wait for what they post there. After javaEndSeconds the process ends with the
// same status, whatever the hooks do. A second call ends it at once.
//
// Returns true if that has begun, which is logged; false if there is no JVM, or no thread could be
// started, so that there is nothing to wait for. Main thread.
[[nodiscard]] bool endJavaInOrder();

// How long the shutdown hooks may take, in seconds; only tests change it.
extern unsigned javaEndSeconds;

#endif
