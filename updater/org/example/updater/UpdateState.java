package org.example.updater;

import java.io.File;
import java.io.IOException;
import java.io.StringReader;
import java.io.StringWriter;
import java.util.Properties;

/**
 * What is remembered from one look at the site to the next. Only who holds the lock of the updates
 * folder writes it; a file that cannot be read counts as empty.
 */
final class UpdateState {
  private static final String NEXT = "next_check";
  private static final long LATEST_NEXT = 400L * 24 * 60 * 60 * 1000;

  private final UpdateFolder folder;
  private final Properties values = new Properties();

  UpdateState(UpdateFolder folder) {
    this.folder = folder;
    try {
      values.load(new StringReader(UpdateFolder.textOf(folder.state())));
    } catch (IOException | IllegalArgumentException e) {
      values.clear();
    }
  }

  /** Returns when to look next; a time that only a changed clock can explain counts as past. */
  long nextCheck(long now) {
    long next = number(NEXT);
    return next > now + LATEST_NEXT ? 0 : next;
  }

  void setNextCheck(long time) {
    values.setProperty(NEXT, Long.toString(time));
  }

  String get(String component, String key) {
    return values.getProperty(component + "/" + key, "");
  }

  long getNumber(String component, String key) {
    return number(component + "/" + key);
  }

  void set(String component, String key, String value) {
    values.setProperty(component + "/" + key, value);
  }

  void remove(String component, String key) {
    values.remove(component + "/" + key);
  }

  void save() throws IOException {
    StringWriter text = new StringWriter();
    values.store(text, null);
    folder.replace(folder.state(), text.toString());
  }

  private long number(String key) {
    return Math.max(0, Version.of(values.getProperty(key, "")));
  }
}
