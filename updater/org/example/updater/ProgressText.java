package org.example.updater;

import java.util.Locale;

/** What a user reads while something is downloaded: how much, how fast, how long it will take. */
final class ProgressText {
  private String text = "";
  private double fraction = -1;
  private long firstNanos;
  private long firstBytes = -1;
  private long lastBytes;

  String text() {
    return text;
  }

  /** Between 0 and 1, or -1. */
  double fraction() {
    return fraction;
  }

  /** Takes a line of an {@link UpdateRun}'s output; others than those of PipedProgress are passed over. */
  void take(String line, long nowNanos) {
    String[] words = line.split(" ", 5);
    if (words[0].equals("say") && line.length() > 4) {
      text = line.substring(4);
      fraction = -1;
    } else if (words[0].equals("bytes") && words.length == 5) {
      long done = Version.of(words[2]);
      long total = Version.of(words[3]);
      if (done >= 0) {
        takeBytes(words[4] + " " + words[1], done, total, nowNanos);
      }
    }
  }

  private void takeBytes(String what, long done, long total, long nowNanos) {
    if (firstBytes < 0 || done < lastBytes) {
      firstBytes = done; // what was there before says nothing about the speed
      firstNanos = nowNanos;
    }
    lastBytes = done;
    double seconds = (nowNanos - firstNanos) / 1e9;
    double speed = seconds > 0.2 ? (done - firstBytes) / seconds : 0;
    fraction = total > 0 ? Math.min(1, (double) done / total) : -1;
    StringBuilder line = new StringBuilder(what).append(": ").append(megabytes(done));
    line.append(total > 0 ? " of " + megabytes(total) : "").append(" MB");
    if (speed > 0) {
      line.append(", ").append(megabytes(speed)).append(" MB/s");
    }
    if (speed > 0 && total > done) {
      line.append(", ").append(timeLeft((total - done) / speed)).append(" left");
    }
    text = line.toString();
  }

  private static String megabytes(double bytes) {
    return String.format(Locale.ROOT, "%.1f", bytes / 1e6);
  }

  private static String timeLeft(double seconds) {
    long whole = (long) Math.ceil(seconds);
    return whole < 120 ? whole + " s" : whole < 7200 ? whole / 60 + " min" : whole / 3600 + " h";
  }
}
