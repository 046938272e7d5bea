package org.example.hello;

import java.awt.BorderLayout;
import java.awt.Color;
import java.awt.Dimension;
import java.awt.Font;
import java.awt.GridBagConstraints;
import java.awt.GridBagLayout;
import java.awt.Insets;
import java.util.Map;
import javax.swing.BorderFactory;
import javax.swing.JComponent;
import javax.swing.JFrame;
import javax.swing.JLabel;
import javax.swing.JPanel;
import javax.swing.SwingUtilities;

/** Shows in a window how it was started; ends when the window is closed. */
public final class HelloWindow {
  private static final Color PAPER = new Color(0xfafafa);
  private static final Color INK = new Color(0x1f2933);
  private static final Color QUIET = new Color(0x7b8794);
  private static final Color ACCENT = new Color(0x2f6f8f);

  private HelloWindow() {}

  public static void main(String[] arguments) {
    Map<String, String> facts = Surroundings.describe(arguments);
    SwingUtilities.invokeLater(() -> show(facts));
  }

  private static void show(Map<String, String> facts) {
    JFrame frame = new JFrame("Hello");
    frame.setDefaultCloseOperation(JFrame.EXIT_ON_CLOSE);
    frame.add(heading(), BorderLayout.NORTH);
    frame.add(table(facts), BorderLayout.CENTER);
    frame.pack();
    frame.setLocation(270, 60);
    frame.setVisible(true);
    System.out.println("The window is up.");
  }

  private static JComponent heading() {
    JLabel label = new JLabel("Hello from Java");
    label.setFont(label.getFont().deriveFont(Font.BOLD, 22f));
    label.setForeground(Color.WHITE);
    label.setOpaque(true);
    label.setBackground(ACCENT);
    label.setBorder(BorderFactory.createEmptyBorder(14, 20, 14, 20));
    return label;
  }

  private static JComponent table(Map<String, String> facts) {
    JPanel panel = new JPanel(new GridBagLayout());
    panel.setBackground(PAPER);
    panel.setBorder(BorderFactory.createEmptyBorder(12, 20, 16, 20));
    int row = 0;
    for (Map.Entry<String, String> fact : facts.entrySet()) {
      panel.add(text(fact.getKey(), QUIET), cell(0, row));
      panel.add(text(shortened(fact.getValue()), INK), cell(1, row));
      row++;
    }
    panel.setPreferredSize(new Dimension(600, panel.getPreferredSize().height));
    return panel;
  }

  private static JLabel text(String text, Color color) {
    JLabel label = new JLabel(text);
    label.setFont(label.getFont().deriveFont(Font.PLAIN, 13f));
    label.setForeground(color);
    return label;
  }

  private static GridBagConstraints cell(int column, int row) {
    GridBagConstraints constraints = new GridBagConstraints();
    constraints.gridx = column;
    constraints.gridy = row;
    constraints.anchor = GridBagConstraints.WEST;
    constraints.insets = new Insets(3, column == 0 ? 0 : 18, 3, 0);
    constraints.weightx = column;
    return constraints;
  }

  /** Keeps the end of a long path, where the telling part is. */
  private static String shortened(String text) {
    return text.length() <= 64 ? text : "\u2026" + text.substring(text.length() - 63);
  }
}
