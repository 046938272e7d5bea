package org.example.updater;

import java.awt.GraphicsEnvironment;
import java.io.File;
import javax.swing.ImageIcon;
import javax.swing.JLabel;
import javax.swing.JWindow;

/** The splash image in a window. Using this class fails on a runtime that has no windows. */
final class SplashWindow {
  private SplashWindow() {}

  /** Shows the image and returns what hides it again. */
  static Runnable show(File image) {
    if (GraphicsEnvironment.isHeadless()) {
      return () -> {};
    }
    JWindow window = new JWindow();
    window.getContentPane().add(new JLabel(new ImageIcon(image.getPath())));
    window.pack();
    window.setLocationRelativeTo(null);
    window.setVisible(true);
    return window::dispose;
  }
}
