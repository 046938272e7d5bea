package org.example.updater;

import java.awt.GraphicsEnvironment;
import java.io.File;
import javax.swing.JWindow;
import javax.swing.SwingUtilities;

/**
 * The splash image, and the progress, in a window. Using this class fails on a runtime that has no
 * windows.
 */
final class SplashWindow implements ProgressView {
  private final JWindow window = new JWindow();
  private final ProgressPanel panel;

  private SplashWindow(File image) {
    panel = new ProgressPanel(image);
    window.setContentPane(panel);
  }

  /** Shows the image, if there is one, and returns what hides it again. */
  static ProgressView open(File image) {
    if (GraphicsEnvironment.isHeadless()) {
      return NONE;
    }
    SplashWindow splash = new SplashWindow(image);
    if (image.isFile()) {
      splash.place();
    }
    return splash;
  }

  private void place() {
    window.pack();
    window.setLocationRelativeTo(null);
    window.setVisible(true);
  }

  @Override
  public void show(String text, double fraction) {
    SwingUtilities.invokeLater(
        () -> {
          if (panel.show(text, fraction)) {
            place();
          }
        });
  }

  @Override
  public void close() {
    window.dispose();
  }
}
