package org.example.updater;

import java.io.PrintStream;

/**
 * One line on the console, which a terminal shows changing; elsewhere only its last state is printed.
 */
final class ProgressLine implements ProgressView {
  private final PrintStream out;
  private final boolean isTerminal;
  private String shown = "";

  ProgressLine(PrintStream out, boolean isTerminal) {
    this.out = out;
    this.isTerminal = isTerminal;
  }

  @Override
  public void show(String text, double fraction) {
    if (isTerminal) {
      StringBuilder line = new StringBuilder("\r").append(text);
      for (int i = text.length(); i < shown.length(); i++) {
        line.append(' ');
      }
      out.print(line);
      out.flush();
    }
    shown = text;
  }

  @Override
  public void close() {
    if (!shown.isEmpty()) {
      out.println(isTerminal ? "" : shown);
    }
    shown = "";
  }
}
