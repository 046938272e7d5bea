package org.example.updater;

/** Does something when a time has passed, unless it is closed before. */
final class Deadline {
  private final Thread thread;

  Deadline(long millis, Runnable action) {
    thread =
        new Thread(
            () -> {
              try {
                Thread.sleep(millis);
                action.run();
              } catch (InterruptedException e) {
                // In time.
              }
            },
            "updater-deadline");
    thread.setDaemon(true);
    thread.start();
  }

  void close() {
    thread.interrupt();
  }
}
