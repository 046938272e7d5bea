package org.example.updater;

import java.io.PrintStream;

/**
 * How an {@link UpdateRun} tells who waits for it: a line "bytes VERSION DONE TOTAL COMPONENT" or "say
 * TEXT", several a second at most, and "end TEXT" at last, where the text is what went wrong, if
 * anything. A name may hold blanks.
 */
final class PipedProgress implements Progress {
  private static final long PAUSE_NANOS = 100_000_000L;

  private final PrintStream out;
  private long last = System.nanoTime() - PAUSE_NANOS;

  PipedProgress(PrintStream out) {
    this.out = out;
  }

  @Override
  public void downloaded(String component, long version, long done, long total) {
    if (System.nanoTime() - last >= PAUSE_NANOS || done == total) {
      last = System.nanoTime();
      out.println("bytes " + version + " " + done + " " + total + " " + component);
      out.flush();
    }
  }

  @Override
  public void installing(String component, long version) {
    say("Installing version " + version + " of " + component + "…");
  }

  void say(String text) {
    out.println("say " + UpdateLog.onOneLine(text));
    out.flush();
  }

  void end(String problem) {
    out.println("end " + UpdateLog.onOneLine(problem));
    out.flush();
  }
}
