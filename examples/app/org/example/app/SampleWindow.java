package org.example.app;

import java.awt.BorderLayout;
import javax.swing.JFrame;
import javax.swing.JLabel;
import javax.swing.SwingConstants;
import javax.swing.SwingUtilities;
import javax.swing.Timer;

/**
 * The sample's one window. Apart from the main class, so that a runtime without windows runs that.
 */
final class SampleWindow {
  private SampleWindow() {}

  /** Opens the window; it closes after {@code milliseconds} when that is above 0. */
  static void open(String text, int milliseconds) {
    JFrame frame = new JFrame(text);
    SwingUtilities.invokeLater(() -> fill(frame, text));
    if (milliseconds > 0) {
      Timer timer = new Timer(milliseconds, event -> frame.dispose());
      timer.setRepeats(false);
      timer.start();
    }
  }

  private static void fill(JFrame frame, String text) {
    frame.setDefaultCloseOperation(JFrame.DISPOSE_ON_CLOSE);
    frame.add(new JLabel(text, SwingConstants.CENTER), BorderLayout.CENTER);
    frame.setSize(360, 160);
    frame.setLocationRelativeTo(null);
    frame.setVisible(true);
  }
}
