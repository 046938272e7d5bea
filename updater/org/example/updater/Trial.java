package org.example.updater;

import java.io.File;
import java.io.IOException;
import java.util.List;
import java.util.concurrent.TimeUnit;

/**
 * The first starts of the application with what an update brought, a version of its own or of the
 * runtime, each as a child process, whose end can be seen. It has started when it says so in a file,
 * has lived for some time or has ended without a failure; when it fails before, twice in a row, the
 * version before is used. Where both are new nobody knows which of them it is, and both are left.
 */
final class Trial {
  private static final long PAUSE_MILLIS = 100;
  private static final int BY_SIGNAL = 128;
  private static final int[] ENDING_SIGNALS = {1, 2, 15};

  private final UpdateFolder folder;
  private final List<File> tried;
  private final File started;
  private final long trialMillis;

  /** {@code tried} are the version folders, {@code started} is the started file. */
  Trial(UpdateFolder folder, List<File> tried, File started, long trialMillis) {
    this.folder = folder;
    this.tried = tried;
    this.started = started;
    this.trialMillis = trialMillis;
    started.delete(); // with another runtime it was another start
  }

  /** Waits for the application's end and returns its exit status. */
  int watch(Process process) throws InterruptedException {
    long start = System.nanoTime();
    while (!process.waitFor(PAUSE_MILLIS, TimeUnit.MILLISECONDS)) {
      long millis = (System.nanoTime() - start) / 1_000_000L;
      if (started.exists() || millis >= trialMillis) {
        hasStarted();
        return process.waitFor();
      }
    }
    int status = process.exitValue();
    if (status == 0 || started.exists()) {
      hasStarted();
    } else if (!isEndedByUser(status)) {
      countFailure(status, (System.nanoTime() - start) / 1_000_000L);
    }
    return status;
  }

  private static boolean isEndedByUser(int status) {
    for (int signal : ENDING_SIGNALS) {
      if (status == BY_SIGNAL + signal) {
        return true;
      }
    }
    return false;
  }

  private Markers markersOf(File version) {
    return new Markers(folder, VersionFolders.componentOf(version));
  }

  private void hasStarted() {
    for (File version : tried) {
      markersOf(version).hasStarted(VersionFolders.numberOf(version));
    }
  }

  private void countFailure(int status, long millis) {
    try (UpdateLog log = new UpdateLog(folder.master)) {
      for (File version : tried) {
        say(log, "The application ended with status " + status + " after " + millis + " ms, before version "
            + nameOf(version) + " counted as started.");
      }
      for (File version : tried) {
        countFailure(version, log);
      }
    }
  }

  private void countFailure(File version, UpdateLog log) {
    try {
      if (markersOf(version).hasFailed(VersionFolders.numberOf(version))) {
        new Notice(folder, VersionFolders.componentOf(version)).takeBack();
        say(log, "Version " + nameOf(version) + " failed to start twice in a row; the version before it is used"
            + " until a newer one exists.");
      }
    } catch (IOException e) {
      say(log, "That cannot be remembered: " + e);
    }
  }

  private static String nameOf(File version) {
    return VersionFolders.versionOf(version) + " of " + VersionFolders.componentOf(version);
  }

  private static void say(UpdateLog log, String line) {
    log.say(line);
    System.err.println("[Updater] " + line);
  }
}
