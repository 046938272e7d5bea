package guest;

import java.awt.Color;
import java.io.File;
import javax.swing.JFrame;
import javax.swing.SwingUtilities;
import javax.swing.Timer;

/**
 * A program with a window: 400 by 300 pixels of one colour at 300, 200. Prints "[Window] up" when it is
 * open, and closes it when the file that its argument "until=FILE" names exists.
 */
public final class SwingWindow {
    private static final String UNTIL = "until=";

    private SwingWindow() {
    }

    public static void main(String[] arguments) {
        for (String argument : arguments) {
            if (argument.startsWith(UNTIL)) {
                File end = new File(argument.substring(UNTIL.length()));
                SwingUtilities.invokeLater(() -> open(end));
            }
        }
    }

    private static void open(File end) {
        JFrame frame = new JFrame("Hosted window");
        frame.getContentPane().setBackground(new Color(0x3366cc));
        frame.setDefaultCloseOperation(JFrame.DISPOSE_ON_CLOSE);
        frame.setBounds(300, 200, 400, 300);
        frame.setVisible(true);
        Timer timer = new Timer(50, event -> {
            if (end.exists()) {
                frame.dispose();
                ((Timer) event.getSource()).stop();
            }
        });
        timer.start();
        System.out.println("[Window] up");
    }
}
