package org.example.updater;

/** Why the application cannot be started, or no update be had, in words for its user. */
class Problem extends Exception {
  private static final long serialVersionUID = 1L;

  Problem(String message) {
    super(message);
  }
}
