package org.example.updater;

import java.io.File;
import java.io.IOException;
import java.io.StringReader;
import java.util.Properties;

/**
 * How this installation looks for updates: {@code updates.properties} beside the updater's jar. What
 * is missing or no number has its default.
 */
final class Settings {
  private static final String NAME = "updates.properties";
  private static final String BEFORE_START = "before_start";

  private final Properties values = new Properties();

  /** Whether the application may have to wait for a check: as good as free to ask. */
  static boolean mayCheckBeforeStart(File updaterFolder) {
    return UpdateFolder.textOf(new File(updaterFolder, NAME)).contains(BEFORE_START);
  }

  Settings(File updaterFolder) {
    this(UpdateFolder.textOf(new File(updaterFolder, NAME)));
  }

  Settings(String text) {
    try {
      values.load(new StringReader(text));
    } catch (IOException | IllegalArgumentException e) {
      values.clear();
    }
  }

  boolean checksBeforeStart() {
    return text("check").equals(BEFORE_START);
  }

  boolean checksInBackground() {
    return text("check").isEmpty() || text("check").equals("background");
  }

  /** The site's address; empty where the launch's update URL is meant. */
  String url() {
    return text("url");
  }

  /** With 0 there is one look at every start, and no other. */
  long intervalMillis() {
    return number("interval", 24 * 60 * 60, 0, 366L * 24 * 60 * 60) * 1000;
  }

  /** How many versions of a component stay. */
  int keep() {
    return (int) number("keep", 2, 1, 1000);
  }

  /** The longest random wait between the application's start and a check. */
  long spreadMillis() {
    return number("spread_ms", 30_000, 0, 3_600_000);
  }

  /** How long a new version has to live to count as started. */
  long trialMillis() {
    return number("trial_ms", 30_000, 1, 3_600_000);
  }

  /** How long a server may take to answer, before the first byte of the body. */
  int answerMillis() {
    return (int) number("answer_ms", 30_000, 1, 3_600_000);
  }

  /** In each such time, {@link #SLOWEST_BYTES} bytes have to arrive. */
  long slowMillis() {
    return number("slow_ms", 60_000, 1, 3_600_000);
  }

  static final long SLOWEST_BYTES = 1024;

  /** How long one download may take in all. */
  long longestMillis() {
    return number("longest_ms", 24 * 3_600_000, 1, 7 * 24 * 3_600_000);
  }

  long largestArchive() {
    return number("largest_mb", 4096, 1, 1024 * 1024) << 20;
  }

  /** The first pause before a request is repeated; the later ones grow. */
  long pauseMillis() {
    return number("pause_ms", 1000, 0, 3_600_000);
  }

  /** The longest pause within one run, also where the server asks for more. */
  long patienceMillis() {
    return number("patience_ms", 60_000, 0, 3_600_000);
  }

  private String text(String key) {
    return values.getProperty(key, "").trim();
  }

  private long number(String key, long standard, long least, long most) {
    try {
      return Math.max(least, Math.min(most, Long.parseLong(text(key))));
    } catch (NumberFormatException e) {
      return standard;
    }
  }
}
