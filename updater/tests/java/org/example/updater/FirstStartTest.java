package org.example.updater;

import static org.junit.Assert.assertEquals;
import static org.junit.Assert.assertTrue;

import java.awt.image.BufferedImage;
import java.io.File;
import java.util.Arrays;
import java.util.concurrent.CountDownLatch;
import org.junit.After;
import org.junit.Before;
import org.junit.Rule;
import org.junit.Test;

/** What a user sees while the first start of an online installer fetches the application. */
public class FirstStartTest {
  private static final int RED = 0xff0000;

  @Rule public final TestFolder folder = new TestFolder();

  private final CountDownLatch rest = new CountDownLatch(1);
  private Scene scene;

  @Before
  public void open() throws Exception {
    scene = new Scene(folder);
  }

  @After
  public void close() throws Exception {
    rest.countDown();
    scene.close();
  }

  /** A version of which half comes bit by bit, and the rest when the test has seen enough. */
  private void publishInHalves() throws Exception {
    byte[] archive = Arrays.copyOf("installs".getBytes("US-ASCII"), 2_000_000);
    Arrays.fill(archive, 8, archive.length, (byte) ' ');
    int half = archive.length / 2;
    scene.publishVersion("3\n");
    scene.site.put(
        Scene.archiveName(3),
        exchange -> {
          exchange.sendResponseHeaders(200, archive.length);
          for (int i = 0; i < 8; i++) {
            exchange.getResponseBody().write(archive, i * half / 8, half / 8);
            exchange.getResponseBody().flush();
            Thread.sleep(200);
          }
          rest.await();
          exchange.getResponseBody().write(archive, half, half);
        });
    scene.settings += "slow_ms=60000\n";
  }

  @Test
  public void aWindowShowsTheImageABarAndALineOfText() throws Exception {
    ProgressPanelTest.red(scene.splash());
    publishInHalves();
    try (TestDisplay display = new TestDisplay()) {
      scene.environment.put("DISPLAY", display.name);
      Scene.Started run = scene.startApplication();
      File file = folder.file("picture.png");
      // The last of several bytes within a tenth of a second is not told.
      Scene.await("half of the bar", () -> Seen.on(display, file).filled > 0.4);
      Seen half = Seen.on(display, file);
      assertEquals("the height of the image", 100, half.redRows);
      assertTrue("the bar shows " + half.filled, half.filled > 0.4 && half.filled < 0.52);
      assertTrue("dark pixels of the text: " + half.dark, half.dark > 100);
      rest.countDown();
      Scene.Run end = run.end();
      assertEquals(end.err, 0, end.status);
      assertTrue(end.out, end.out.contains("App version 3"));
      assertEquals("the window is still there", 0, Seen.on(display, file).redRows);
    }
  }

  /** The window, which is the only thing on the display. */
  private static final class Seen {
    final int redRows;
    double filled = -1;
    int dark;

    static Seen on(TestDisplay display, File file) throws java.io.IOException {
      try {
        return new Seen(display.picture(file));
      } catch (InterruptedException e) {
        throw new java.io.IOException(e);
      }
    }

    private Seen(BufferedImage picture) {
      int x = picture.getWidth() / 2;
      int top = 0;
      while (top < picture.getHeight() && colour(picture, x, top) != RED) {
        top++;
      }
      int end = top;
      while (end < picture.getHeight() && colour(picture, x, end) == RED) {
        end++;
      }
      redRows = end - top;
      if (redRows > 0 && end + 40 < picture.getHeight()) {
        look(picture, end);
      }
    }

    /** The bar lies right below the image, the text below the bar. */
    private void look(BufferedImage picture, int top) {
      int y = top + 6;
      int left = picture.getWidth() / 2;
      while (left > 0 && colour(picture, left - 1, y) != 0) {
        left--;
      }
      int right = picture.getWidth() / 2;
      while (right < picture.getWidth() - 1 && colour(picture, right, y) != 0) {
        right++;
      }
      int empty = colour(picture, right - 4, y);
      int count = 0;
      for (int x = left + 4; x < right - 4; x++) {
        count += colour(picture, x, y) == empty ? 0 : 1;
      }
      filled = right - left > 100 ? (double) count / (right - left - 8) : -1;
      for (int x = left; x < right; x++) {
        for (int row = top + 16; row < top + 32; row++) {
          int colour = colour(picture, x, row);
          dark += colour != 0 && (colour & 0xff) < 0x80 ? 1 : 0;
        }
      }
    }

    private static int colour(BufferedImage picture, int x, int y) {
      return picture.getRGB(x, y) & 0xffffff;
    }
  }

  @Test
  public void aRuntimeWithoutWindowsShowsTheProgressOnTheConsole() throws Exception {
    scene.environment.put("JDK_JAVA_OPTIONS", "--limit-modules=java.base"); // of each process
    scene.environment.put("DISPLAY", ":97"); // asked for, if anybody asked
    ProgressPanelTest.red(scene.splash());
    scene.publish(3, "installs");
    Scene.Run run = scene.runApplication();
    assertEquals(run.err, 0, run.status);
    assertTrue(run.out, run.out.matches("(?s).*Installing version 3 of Sample.*App version 3\n"));
    assertTrue(run.err, run.err.contains("[Updater] No splash: "));
  }

  @Test
  public void aMachineWithoutADisplayShowsTheProgressOnTheConsole() throws Exception {
    scene.environment.put("DISPLAY", ":97"); // nobody answers there
    ProgressPanelTest.red(scene.splash());
    scene.publish(3, "installs");
    Scene.Run run = scene.runApplication();
    assertEquals(run.err, 0, run.status);
    assertTrue(run.out, run.out.matches("(?s).*Installing version 3 of Sample.*App version 3\n"));
  }

  @Test
  public void aSilentStartShowsNoWindow() throws Exception {
    ProgressPanelTest.red(scene.splash());
    publishInHalves();
    scene.isSilent = true;
    try (TestDisplay display = new TestDisplay()) {
      scene.environment.put("DISPLAY", display.name);
      Scene.Started run = scene.startApplication();
      File part = new File(scene.updates.downloads(), "Sample-3.part");
      Scene.await("half of the archive", () -> part.length() == 1_000_000);
      assertEquals(0, Seen.on(display, folder.file("picture.png")).redRows);
      rest.countDown();
      assertEquals("App version 3\n", run.end().out);
    }
  }
}
