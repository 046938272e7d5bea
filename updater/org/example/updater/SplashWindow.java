package org.example.updater;

import java.awt.BorderLayout;
import java.awt.GraphicsEnvironment;
import java.io.File;
import javax.swing.ImageIcon;
import javax.swing.JLabel;
import javax.swing.JPanel;
import javax.swing.JProgressBar;
import javax.swing.JWindow;
import javax.swing.SwingConstants;
import javax.swing.SwingUtilities;

/**
 * The splash image in a window, below it a bar and a line of text once there is progress to show.
 * Using this class fails on a runtime that has no windows.
 */
final class SplashWindow implements ProgressView {
  private final JWindow window = new JWindow();
  private final JProgressBar bar = new JProgressBar(0, 1000);
  private final JLabel line = new JLabel(" ", SwingConstants.CENTER);
  private boolean hasBar;

  private SplashWindow(File image) {
    JLabel picture = image.isFile() ? new JLabel(new ImageIcon(image.getPath())) : new JLabel();
    window.getContentPane().add(picture, BorderLayout.CENTER);
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
          addBar();
          line.setText(text);
          bar.setIndeterminate(fraction < 0);
          bar.setValue((int) (Math.max(0, fraction) * 1000));
        });
  }

  private void addBar() {
    if (!hasBar) {
      hasBar = true;
      JPanel below = new JPanel(new BorderLayout());
      below.add(bar, BorderLayout.NORTH);
      // As wide as the longest text that is to be expected.
      line.setText("Application 1000000000: 1000.0 of 1000.0 MB, 100.0 MB/s, 100 min left");
      below.add(line, BorderLayout.SOUTH);
      window.getContentPane().add(below, BorderLayout.SOUTH);
      place();
    }
  }

  @Override
  public void close() {
    window.dispose();
  }
}
