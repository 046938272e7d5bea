package org.example.updater;

import java.io.File;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.Paths;
import org.junit.rules.ExternalResource;

/** A folder below the build folder that is gone after the test. */
final class TestFolder extends ExternalResource {
  private Path path;

  @Override
  protected void before() throws IOException {
    path = Files.createTempDirectory(Paths.get(System.getProperty("test.work")), "test-");
  }

  @Override
  protected void after() {
    try {
      Trees.remove(path);
    } catch (IOException e) {
      throw new IllegalStateException(e);
    }
  }

  Path path() {
    return path;
  }

  File file(String name) {
    return path.resolve(name).toFile();
  }

  File folder(String name) throws IOException {
    return Files.createDirectories(path.resolve(name)).toFile();
  }
}
