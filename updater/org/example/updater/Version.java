package org.example.updater;

/** A version as it stands on a site and in the folders that the updater itself made. */
final class Version {
  static final long NONE = -1;
  private static final int MOST_DIGITS = 18;

  private Version() {}

  /** Returns the number; {@link #NONE} of anything but decimal digits without a leading zero. */
  static long of(String text) {
    if (text.isEmpty() || text.length() > MOST_DIGITS || text.length() > 1 && text.startsWith("0")) {
      return NONE;
    }
    for (int i = 0; i < text.length(); i++) {
      if (text.charAt(i) < '0' || text.charAt(i) > '9') {
        return NONE;
      }
    }
    return Long.parseLong(text);
  }
}
