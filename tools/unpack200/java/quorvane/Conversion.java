package quorvane;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.Paths;
import java.nio.file.StandardCopyOption;

/**
 * Makes one file of another. The output gets its name once it is whole, so that a conversion that
 * fails or is killed leaves nothing under it.
 */
final class Conversion {
  private static final int INPUT_ERROR = 1;
  private static final int USAGE_ERROR = 2;

  /** What is done: reads the first file and writes the second, which does not exist yet. */
  interface Body {
    void convert(Path in, Path out) throws IOException;
  }

  private Conversion() {}

  /** Runs a program whose arguments are the input and the output; ends the process on failure. */
  static void runProgram(String name, String[] arguments, Body body) {
    if (arguments.length != 2) {
      System.err.println("usage: " + name + " IN OUT");
      System.exit(USAGE_ERROR);
    }
    try {
      convert(Paths.get(arguments[0]), Paths.get(arguments[1]), body);
    } catch (IOException | RuntimeException | Error error) {
      // The library reports damaged input as whatever it happens to run into.
      System.err.println(name + ": " + arguments[0] + ": " + error);
      System.exit(INPUT_ERROR);
    }
  }

  private static void convert(Path in, Path out, Body body) throws IOException {
    Path part = Paths.get(out + ".part-" + Long.toString(System.nanoTime(), Character.MAX_RADIX));
    try {
      body.convert(in, part);
      Files.move(part, out, StandardCopyOption.REPLACE_EXISTING, StandardCopyOption.ATOMIC_MOVE);
    } finally {
      Files.deleteIfExists(part);
    }
  }
}
