package org.example.updater;

/** The site does not answer now, or asks to be left alone: no other request to it makes sense yet. */
final class Later extends Problem {
  private static final long serialVersionUID = 1L;

  /** How long to leave it alone, or 0 where it named no time. */
  final long millis;

  Later(String message, long millis) {
    super(message);
    this.millis = millis;
  }
}
