package sample.updater;

import java.awt.AWTError;
import java.awt.GraphicsEnvironment;
import java.io.File;
import javax.swing.ImageIcon;
import javax.swing.JLabel;
import javax.swing.JWindow;

/** Shows the splash image until it is closed, where the runtime and the machine have windows. */
final class Splash {
    private JWindow window;

    private Splash() {}

    /** Returns a splash that shows the image, or one that shows nothing. */
    static Splash show(File image) {
        Splash splash = new Splash();
        if (image.isFile()) {
            try {
                splash.open(image);
            } catch (LinkageError | AWTError | RuntimeException e) {
                System.err.println("[Updater] No splash: " + e);
            }
        }
        return splash;
    }

    private void open(File image) {
        if (GraphicsEnvironment.isHeadless()) {
            return;
        }
        JWindow opened = new JWindow();
        opened.getContentPane().add(new JLabel(new ImageIcon(image.getPath())));
        opened.pack();
        opened.setLocationRelativeTo(null);
        opened.setVisible(true);
        window = opened;
    }

    void close() {
        if (window != null) {
            window.dispose();
        }
    }
}
