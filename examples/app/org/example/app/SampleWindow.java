package org.example.app;

import java.awt.BorderLayout;
import java.awt.event.WindowAdapter;
import java.awt.event.WindowEvent;
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

  /**
   * Opens the window; it closes after {@code milliseconds} when that is above 0, and shows when there
   * is a newer version. With {@code untilUpdate} it closes five seconds after that instead.
   */
  static void open(String text, int milliseconds, boolean untilUpdate) {
    JFrame frame = new JFrame(text);
    JLabel label = new JLabel(text, SwingConstants.CENTER);
    SwingUtilities.invokeLater(() -> fill(frame, label));
    if (milliseconds > 0 && !untilUpdate) {
      closeAfter(frame, milliseconds);
    }
    Timer look = new Timer(500, null);
    look.addActionListener(event -> {
      String newer = UpdateNotice.newerVersion();
      if (newer != null) {
        look.stop();
        System.out.println("Version " + newer + " is ready: restart to update");
        label.setText("Version " + newer + " is ready: restart to update");
        if (untilUpdate) {
          closeAfter(frame, 5000);
        }
      }
    });
    look.start();
    frame.addWindowListener(new WindowAdapter() {
      @Override
      public void windowClosed(WindowEvent event) {
        look.stop(); // Java ends when nothing is left to do
      }
    });
  }

  private static void closeAfter(JFrame frame, int milliseconds) {
    Timer timer = new Timer(milliseconds, event -> frame.dispose());
    timer.setRepeats(false);
    timer.start();
  }

  private static void fill(JFrame frame, JLabel label) {
    frame.setDefaultCloseOperation(JFrame.DISPOSE_ON_CLOSE);
    frame.add(label, BorderLayout.CENTER);
    frame.setSize(360, 160);
    frame.setLocationRelativeTo(null);
    frame.setVisible(true);
  }
}
