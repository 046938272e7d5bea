package org.example.updater;

import java.text.ParseException;
import java.text.SimpleDateFormat;
import java.util.Date;
import java.util.Locale;
import java.util.Random;
import java.util.TimeZone;
import java.util.function.Consumer;

/**
 * Whether and when a request that failed is repeated: after pauses that grow, differ from one
 * installation to the next, and are no shorter than the server asks for.
 */
final class Retries {
  /** However much each attempt brings: nobody reconnects for ever. */
  private static final int MOST_ATTEMPTS = 200;

  private final int inARow;
  private final Settings settings;
  private final Random random;
  private final Consumer<String> log;
  private int failed;
  private int total;

  /** {@code inARow} attempts without any progress are made. */
  Retries(int inARow, Settings settings, Random random, Consumer<String> log) {
    this.inARow = inARow;
    this.settings = settings;
    this.random = random;
    this.log = log;
  }

  /** An attempt brought something: only those after it count. */
  void progressed() {
    failed = 0;
  }

  /**
   * Waits before the next attempt. {@code askedMillis} is what the server asked for, or 0. Throws
   * when there is to be none.
   */
  void pauseAfter(String failure, long askedMillis) throws Later, InterruptedException {
    failed++;
    total++;
    if (askedMillis > settings.patienceMillis()) {
      throw new Later(failure + " It asks for a pause of " + askedMillis / 1000 + " s.", askedMillis);
    }
    if (failed >= inARow || total >= MOST_ATTEMPTS) {
      throw new Later(failure, 0);
    }
    // On top of it: all that were sent away together would come back together.
    long pause = askedMillis + nextPause();
    log.accept(failure + " Trying again in " + pause + " ms.");
    Thread.sleep(pause);
  }

  /** Doubles each time, and lies between half and one and a half of that. */
  long nextPause() {
    long pause = settings.pauseMillis() << Math.min(failed - 1, 20);
    pause = Math.min(pause, settings.patienceMillis());
    return (long) (pause * (0.5 + random.nextDouble()));
  }

  static boolean isWorthIt(int status) {
    return status == 408 || status == 429 || status >= 500;
  }

  /** Returns the milliseconds that a header Retry-After asks for, in seconds or as a date, or 0. */
  static long asked(String retryAfter, long now) {
    if (retryAfter == null) {
      return 0;
    }
    long seconds = Version.of(retryAfter.trim());
    if (seconds >= 0) {
      return Math.min(seconds, Integer.MAX_VALUE) * 1000;
    }
    SimpleDateFormat format = new SimpleDateFormat("EEE, dd MMM yyyy HH:mm:ss zzz", Locale.US);
    format.setTimeZone(TimeZone.getTimeZone("GMT"));
    try {
      Date date = format.parse(retryAfter.trim());
      return Math.min(Math.max(0, date.getTime() - now), Integer.MAX_VALUE * 1000L);
    } catch (ParseException e) {
      return 0;
    }
  }
}
