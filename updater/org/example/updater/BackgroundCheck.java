package org.example.updater;

import java.io.File;
import java.io.IOException;
import java.util.Random;

/**
 * Looks for updates while the application runs, and again whenever it is time. Where the application
 * ends before the first look, that is made on its way out.
 */
final class BackgroundCheck implements Runnable {
  private static final long SHORTEST_WAIT_MILLIS = 1000;

  private final LaunchProperties properties;
  private final File propertiesFile;
  private final File ownFolder;
  private boolean hasBegun;

  private BackgroundCheck(LaunchProperties properties, File propertiesFile, File ownFolder) {
    this.properties = properties;
    this.propertiesFile = propertiesFile;
    this.ownFolder = ownFolder;
  }

  /** Called right before the application's start, so that nothing but two threads is made. */
  static void schedule(LaunchProperties properties, File propertiesFile, File ownFolder) {
    BackgroundCheck check = new BackgroundCheck(properties, propertiesFile, ownFolder);
    Runtime.getRuntime().addShutdownHook(new AtEnd(check));
    Thread thread = new Thread(check, "updater-check");
    thread.setDaemon(true);
    thread.start();
  }

  @Override
  public void run() {
    try {
      Thread.sleep(START_MILLIS);
      Settings settings = new Settings(ownFolder);
      if (isOff(settings)) {
        return;
      }
      Thread.sleep((long) (new Random().nextDouble() * settings.spreadMillis()));
      while (true) {
        Process running = beginIfDue();
        if (running != null) {
          running.waitFor();
        }
        if (settings.intervalMillis() == 0) {
          return;
        }
        Thread.sleep(Math.max(SHORTEST_WAIT_MILLIS, millisToNext(settings)));
      }
    } catch (InterruptedException | IOException | Problem | RuntimeException e) {
      // No update then; the next start looks again.
    }
  }

  /** The application's own start comes first. */
  private static final long START_MILLIS = 1000;

  private boolean isOff(Settings settings) {
    return !settings.checksInBackground()
        || UpdateSource.urlOf(properties, settings).isEmpty();
  }

  private long millisToNext(Settings settings) {
    long now = System.currentTimeMillis();
    long left = nextCheck(now) - now;
    // Another process is at it, or nothing can be remembered here.
    return left > 0 ? left : settings.intervalMillis();
  }

  private long nextCheck(long now) {
    return new UpdateState(new UpdateFolder(ownFolder.getParentFile())).nextCheck(now);
  }

  private synchronized Process beginIfDue() throws Problem, IOException {
    hasBegun = true;
    long now = System.currentTimeMillis();
    return nextCheck(now) > now
        ? null
        : new UpdateProcess(properties, propertiesFile, ownFolder).startInBackground();
  }

  private static final class AtEnd extends Thread {
    private final BackgroundCheck check;

    AtEnd(BackgroundCheck check) {
      super("updater-end");
      this.check = check;
    }

    @Override
    public void run() {
      check.beginAtEnd();
    }
  }

  private synchronized void beginAtEnd() {
    try {
      if (!hasBegun && !isOff(new Settings(ownFolder))) {
        beginIfDue();
      }
    } catch (IOException | Problem | RuntimeException e) {
      // As above.
    }
  }
}
