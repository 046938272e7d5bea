package org.example.updater;

import static org.junit.Assert.assertEquals;
import static org.junit.Assert.assertFalse;
import static org.junit.Assert.assertTrue;

import java.awt.Color;
import java.awt.Component;
import java.awt.Container;
import java.awt.Graphics2D;
import java.awt.Rectangle;
import java.awt.image.BufferedImage;
import java.io.File;
import java.util.Collections;
import javax.imageio.ImageIO;
import javax.swing.JLabel;
import javax.swing.JProgressBar;
import javax.swing.SwingUtilities;
import org.junit.Before;
import org.junit.Rule;
import org.junit.Test;

/** What is drawn for the user while something is downloaded. */
public class ProgressPanelTest {
  private static final int WIDTH = 300;
  private static final int HEIGHT = 100;

  @Rule public final TestFolder folder = new TestFolder();

  private ProgressPanel panel;

  @Before
  public void make() throws Exception {
    panel = new ProgressPanel(red(folder.file("nativesplash.png")));
  }

  static File red(File file) throws Exception {
    BufferedImage image = new BufferedImage(WIDTH, HEIGHT, BufferedImage.TYPE_INT_RGB);
    Graphics2D graphics = image.createGraphics();
    graphics.setColor(Color.RED);
    graphics.fillRect(0, 0, WIDTH, HEIGHT);
    graphics.dispose();
    assertTrue(ImageIO.write(image, "png", file));
    return file;
  }

  private BufferedImage drawn(String text, double fraction) throws Exception {
    BufferedImage[] result = new BufferedImage[1];
    SwingUtilities.invokeAndWait(
        () -> {
          if (panel.show(text, fraction)) {
            panel.setSize(panel.getPreferredSize());
          }
          lay(panel);
          result[0] = picture(panel);
        });
    return result[0];
  }

  private static void lay(Container container) {
    container.doLayout();
    for (Component component : container.getComponents()) {
      if (component instanceof Container) {
        lay((Container) component);
      }
    }
  }

  private static BufferedImage picture(Component component) {
    BufferedImage image =
        new BufferedImage(
            component.getWidth(), component.getHeight(), BufferedImage.TYPE_INT_RGB);
    Graphics2D graphics = image.createGraphics();
    component.paint(graphics);
    graphics.dispose();
    return image;
  }

  private Rectangle placeOf(Class<? extends Component> kind) {
    Container below = (Container) panel.getComponent(1);
    for (Component component : below.getComponents()) {
      if (kind.isInstance(component)) {
        return SwingUtilities.convertRectangle(below, component.getBounds(), panel);
      }
    }
    throw new AssertionError("There is no " + kind);
  }

  /** How much of the bar has another colour than an empty one, along its middle. */
  private double filled(BufferedImage picture) throws Exception {
    Rectangle bar = placeOf(JProgressBar.class);
    BufferedImage empty = drawn("x", 0);
    int y = bar.y + bar.height / 2;
    int count = 0;
    for (int x = bar.x; x < bar.x + bar.width; x++) {
      count += picture.getRGB(x, y) == empty.getRGB(x, y) ? 0 : 1;
    }
    return (double) count / bar.width;
  }

  private static boolean isRed(BufferedImage picture, int x, int y) {
    return (picture.getRGB(x, y) & 0xffffff) == 0xff0000;
  }

  @Test
  public void theBarIsAsFullAsTheDownload() throws Exception {
    drawn("x", 0);
    assertEquals(0, filled(drawn("0.0 of 10.0 MB", 0)), 0);
    assertEquals(0.5, filled(drawn("5.0 of 10.0 MB", 0.5)), 0.02);
    assertEquals(1, filled(drawn("10.0 of 10.0 MB", 1)), 0.02);
  }

  @Test
  public void theBarMovesWhereTheSizeIsUnknown() throws Exception {
    drawn("x", -1);
    JProgressBar bar = (JProgressBar) ((Container) panel.getComponent(1)).getComponent(0);
    assertTrue(bar.isIndeterminate());
    drawn("x", 0.5);
    assertFalse(bar.isIndeterminate());
  }

  @Test
  public void imageBarAndTextLieBelowEachOther() throws Exception {
    BufferedImage picture = drawn("Sample 3: 5.0 of 10.0 MB", 0.5);
    int left = (picture.getWidth() - WIDTH) / 2;
    assertTrue(isRed(picture, left + 5, 5) && isRed(picture, left + WIDTH - 5, HEIGHT - 5));
    Rectangle bar = placeOf(JProgressBar.class);
    Rectangle line = placeOf(JLabel.class);
    assertTrue(HEIGHT <= bar.y);
    assertTrue(bar.y + bar.height <= line.y);
    assertTrue(line.y + line.height <= picture.getHeight());
    assertEquals(picture.getWidth(), bar.width);
  }

  /** Compared with the same text drawn for itself, which has no room to be cut. */
  private void expectText(String text) throws Exception {
    BufferedImage picture = drawn(text, 0.5);
    Rectangle line = placeOf(JLabel.class);
    JLabel expected = new JLabel(text, JLabel.CENTER);
    expected.setOpaque(true);
    expected.setSize(line.getSize());
    assertTrue(expected.getPreferredSize().width <= line.width);
    BufferedImage alone = picture(expected);
    boolean isAnyDark = false;
    for (int y = 0; y < line.height; y++) {
      for (int x = 0; x < line.width; x++) {
        int colour = picture.getRGB(line.x + x, line.y + y);
        assertEquals(alone.getRGB(x, y), colour);
        isAnyDark |= (colour & 0xff) < 0x80;
      }
    }
    assertTrue(isAnyDark);
  }

  @Test
  public void theTextIsShown() throws Exception {
    expectText("Sample 3: 5.0 of 10.0 MB, 2.5 MB/s, 2 s left");
    expectText("Installing version 3 of Sample…");
  }

  @Test
  public void aLongTextIsShownWhole() throws Exception {
    String name = String.join("", Collections.nCopies(60, "W"));
    expectText("Sample 3: 5.0 of 10.0 MB");
    expectText(name + " 999999999999999999: 1000.0 of 1000.0 MB, 100.0 MB/s, 100 min left");
  }

  @Test
  public void theWindowDoesNotChangeItsSizeWithEachText() throws Exception {
    int width = drawn("Sample 3: 0.0 of 1000.0 MB", 0).getWidth();
    assertEquals(width, drawn("Sample 3: 999.0 of 1000.0 MB, 10.5 MB/s, 119 min left", 1).getWidth());
    assertFalse(panel.show("Installing version 3 of Sample…", -1));
  }

  @Test
  public void withoutAnImageBarAndTextAreShown() throws Exception {
    panel = new ProgressPanel(folder.file("missing.png"));
    expectText("Sample 3: 5.0 of 10.0 MB");
    assertEquals(0.5, filled(drawn("Sample 3: 5.0 of 10.0 MB", 0.5)), 0.02);
  }
}
