package org.example.updater;

import java.io.File;
import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.List;
import java.util.Map;

/**
 * The properties that the launch handed over in a file: key, zero byte, value, zero byte and so on,
 * the last value without a zero byte. The byte 4 stands for an empty value. A key begins with
 * "qvstat_" when its value was fixed at packaging or by the launch, with "qvdyna_" when it was
 * given at run time.
 */
final class LaunchProperties {
  private static final String EMPTY = "\u0004";

  private final Map<String, String> values = new HashMap<>();

  static LaunchProperties read(File file) throws Problem {
    try {
      return new LaunchProperties(
          new String(Files.readAllBytes(file.toPath()), StandardCharsets.UTF_8));
    } catch (IOException e) {
      throw new Problem("The launch properties cannot be read: " + e);
    }
  }

  private LaunchProperties(String text) {
    String[] texts = text.split("\0", -1);
    for (int i = 0; i + 1 < texts.length; i += 2) {
      values.put(texts[i], texts[i + 1].equals(EMPTY) ? "" : texts[i + 1]);
    }
  }

  /** Returns a packaged property, or the empty text when there is none. */
  String packaged(String name) {
    return values.getOrDefault("qvstat_" + name, "");
  }

  /** Returns a property given at run time, or null when there is none. */
  String given(String name) {
    return values.get("qvdyna_" + name);
  }

  /** Returns a packaged property that the launch never leaves out. */
  String required(String name) throws Problem {
    String value = packaged(name);
    if (value.isEmpty()) {
      throw new Problem("The launch properties hold no \"" + name + "\".");
    }
    return value;
  }

  /** Returns the JVM options that last worked with the runtime. */
  List<String> rememberedOptions() {
    List<String> options = new ArrayList<>();
    for (long i = 0; i < number("jvm_options_count"); i++) {
      options.add(packaged("jvm_options_" + i));
    }
    return options;
  }

  /** Returns a packaged decimal number, or 0 when there is none. */
  long number(String name) {
    try {
      return Long.parseLong(packaged(name).trim());
    } catch (NumberFormatException e) {
      return 0;
    }
  }
}
