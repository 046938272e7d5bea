package org.example.updater;

/** Why the application cannot be started, in words for its user. */
final class Problem extends Exception {
  private static final long serialVersionUID = 1L;

  Problem(String message) {
    super(message);
  }
}
