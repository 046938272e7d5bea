package org.example.updater;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Comparator;
import java.util.stream.Stream;

/** Folders with all that is in them. */
final class Trees {
  private Trees() {}

  static void remove(Path root) throws IOException {
    try (Stream<Path> all = Files.walk(root)) {
      for (Path one : (Iterable<Path>) all.sorted(Comparator.reverseOrder())::iterator) {
        Files.deleteIfExists(one);
      }
    }
  }
}
