package org.example.updater;

import java.io.File;
import java.io.IOException;
import java.util.concurrent.TimeUnit;

/**
 * The first starts of a version that an update brought, each as a child process, whose end can be
 * seen. It has started when it says so in a file, has lived for some time or has ended without a
 * failure; when it fails before, twice in a row, the version before it is used.
 */
final class Trial {
  private static final long PAUSE_MILLIS = 100;
  private static final int BY_SIGNAL = 128;
  private static final int[] ENDING_SIGNALS = {1, 2, 15};

  private final UpdateFolder folder;
  private final Markers markers;
  private final String name;
  private final long version;
  private final long trialMillis;

  Trial(UpdateFolder folder, Markers markers, String name, long version, long trialMillis) {
    this.folder = folder;
    this.markers = markers;
    this.name = name;
    this.version = version;
    this.trialMillis = trialMillis;
  }

  /** Waits for the application's end and returns its exit status. */
  int watch(Process process) throws InterruptedException {
    long start = System.nanoTime();
    File started = folder.started(name, version);
    while (!process.waitFor(PAUSE_MILLIS, TimeUnit.MILLISECONDS)) {
      long millis = (System.nanoTime() - start) / 1_000_000L;
      if (started.exists() || millis >= trialMillis) {
        markers.hasStarted(version);
        return process.waitFor();
      }
    }
    int status = process.exitValue();
    if (status == 0 || started.exists()) {
      markers.hasStarted(version);
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

  private void countFailure(int status, long millis) {
    try (UpdateLog log = new UpdateLog(folder.master)) {
      say(log, "Version " + version + " of " + name + " ended with status " + status + " after "
          + millis + " ms, before it counted as started.");
      try {
        if (markers.hasFailed(version)) {
          new Notice(folder, name).takeBack();
          say(log, "Version " + version + " of " + name
              + " failed to start twice in a row; the version before it is used until a newer one"
              + " exists.");
        }
      } catch (IOException e) {
        say(log, "That cannot be remembered: " + e);
      }
    }
  }

  private static void say(UpdateLog log, String line) {
    log.say(line);
    System.err.println("[Updater] " + line);
  }
}
