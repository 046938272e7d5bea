package org.example.updater;

import java.awt.image.BufferedImage;
import java.io.BufferedReader;
import java.io.Closeable;
import java.io.File;
import java.io.IOException;
import java.io.InputStreamReader;
import java.nio.charset.StandardCharsets;
import java.util.concurrent.TimeUnit;
import javax.imageio.ImageIO;
import org.junit.Assume;

/** A display of the test's own, of which it can take pictures. */
final class TestDisplay implements Closeable {
  private final Process server;
  final String name;

  /** The test that needs one is left out on a Mac, where windows are no matter of Xvfb's. */
  TestDisplay() throws IOException {
    Assume.assumeFalse("a Mac", System.getProperty("os.name").startsWith("Mac"));
    server =
        new ProcessBuilder(
                "Xvfb", "-displayfd", "1", "-screen", "0", "1280x800x24", "-nolisten", "tcp", "-noreset")
            .redirectError(ProcessBuilder.Redirect.DISCARD)
            .start();
    String number =
        new BufferedReader(
                new InputStreamReader(server.getInputStream(), StandardCharsets.US_ASCII))
            .readLine();
    if (number == null) {
      throw new IOException("Xvfb did not start.");
    }
    name = ":" + number;
  }

  /** What is to be seen now. Another process looks, since this one may be without a display. */
  BufferedImage picture(File file) throws IOException, InterruptedException {
    ProcessBuilder builder =
        new ProcessBuilder(
            System.getProperty("java.home") + "/bin/java",
            "-Djava.awt.headless=false",
            "-cp",
            System.getProperty("java.class.path"),
            Camera.class.getName(),
            file.getPath());
    builder.environment().put("DISPLAY", name);
    Process camera = builder.inheritIO().start();
    if (!camera.waitFor(60, TimeUnit.SECONDS) || camera.exitValue() != 0) {
      camera.destroyForcibly();
      throw new IOException("No picture could be taken.");
    }
    return ImageIO.read(file);
  }

  /** Writes a picture of the whole display to the file that is its argument. */
  public static final class Camera {
    private Camera() {}

    public static void main(String[] arguments) throws Exception {
      java.awt.Rectangle all =
          new java.awt.Rectangle(java.awt.Toolkit.getDefaultToolkit().getScreenSize());
      BufferedImage picture = new java.awt.Robot().createScreenCapture(all);
      System.exit(ImageIO.write(picture, "png", new File(arguments[0])) ? 0 : 1);
    }
  }

  @Override
  public void close() {
    server.destroy();
  }
}
