package org.example.updater;

import java.awt.BorderLayout;
import java.awt.Dimension;
import java.io.File;
import javax.swing.ImageIcon;
import javax.swing.JLabel;
import javax.swing.JPanel;
import javax.swing.JProgressBar;
import javax.swing.SwingConstants;

/** The splash image, below it a bar and a line of text once there is progress to show. */
final class ProgressPanel extends JPanel {
  private static final long serialVersionUID = 1;
  private static final int STEPS = 1000;
  /** As wide as what is mostly to be expected, so that the window rarely grows. */
  private static final String USUAL_TEXT =
      "Application 1000000000: 1000.0 of 1000.0 MB, 100.0 MB/s, 100 min left";

  private final JProgressBar bar = new JProgressBar(0, STEPS);
  private final JLabel line = new JLabel(USUAL_TEXT, SwingConstants.CENTER);
  private int widest = line.getPreferredSize().width;
  private boolean hasBar;

  /** The image may be missing. */
  ProgressPanel(File image) {
    super(new BorderLayout());
    add(image.isFile() ? new JLabel(new ImageIcon(image.getPath())) : new JLabel());
  }

  /** Shows progress, and returns whether more room is needed for it than before. */
  boolean show(String text, double fraction) {
    boolean isNew = !hasBar;
    if (isNew) {
      addBar();
    }
    bar.setIndeterminate(fraction < 0);
    bar.setValue((int) (Math.max(0, fraction) * STEPS));
    line.setText(text);
    return isRoomNeeded() || isNew;
  }

  private void addBar() {
    hasBar = true;
    JPanel below = new JPanel(new BorderLayout());
    below.add(bar, BorderLayout.NORTH);
    below.add(line, BorderLayout.SOUTH);
    add(below, BorderLayout.SOUTH);
  }

  private boolean isRoomNeeded() {
    line.setPreferredSize(null);
    Dimension size = line.getPreferredSize();
    boolean isWider = size.width > widest;
    widest = Math.max(widest, size.width);
    line.setPreferredSize(new Dimension(widest, size.height));
    return isWider;
  }
}
