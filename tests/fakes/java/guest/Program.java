package guest;

import java.io.FileDescriptor;
import java.io.FileOutputStream;
import java.io.PrintStream;

// A Java program for the tests: prints what it was given, in UTF-8, then does what its first
// argument says.
public final class Program {
    private static PrintStream out;

    public static void main(String[] arguments) throws Exception {
        out = new PrintStream(new FileOutputStream(FileDescriptor.out), true, "UTF-8");
        out.println("[Guest] arguments " + arguments.length);
        for (String argument : arguments) {
            out.println("[Guest] <" + argument + ">");
        }
        out.println("[Guest] property " + System.getProperty("guest.property"));
        out.println("[Guest] class path " + System.getProperty("java.class.path"));
        Runtime.getRuntime().addShutdownHook(new Thread(() -> out.println("[Guest] hook")));
        perform(arguments.length == 0 ? "" : arguments[0]);
    }

    private static void perform(String action) throws Exception {
        switch (action) {
            case "exit":
                System.exit(7);
                break;
            case "throw":
                throw new IllegalStateException("thrown on purpose");
            case "overflow":
                overflow(0);
                break;
            case "linger":
                new Thread(Program::linger).start();
                break;
            case "daemon":
                Thread daemon = new Thread(Program::sleepForEver);
                daemon.setDaemon(true);
                daemon.start();
                break;
            case "variable":
                new ProcessBuilder("printenv", "GUEST_WORD").inheritIO().start().waitFor();
                break;
            case "signals":
                new ProcessBuilder("grep", "SigIgn", "/proc/self/status").inheritIO().start().waitFor();
                break;
            case "stay":
                sleepForEver();
                break;
            case "term":
                endOwnProcess();
                break;
            default:
                out.println("[Guest] thread " + Thread.currentThread().getName());
        }
    }

    private static int overflow(int depth) {
        return overflow(depth + 1) + 1;
    }

    private static void linger() {
        try {
            Thread.sleep(300);
        } catch (InterruptedException e) {
            out.println("[Guest] interrupted");
        }
        out.println("[Guest] lingered");
    }

    private static void sleepForEver() {
        while (true) {
            try {
                Thread.sleep(1000);
            } catch (InterruptedException e) {
                return;
            }
        }
    }

    private static void endOwnProcess() throws Exception {
        new ProcessBuilder("kill", "-TERM", Long.toString(ProcessHandle.current().pid())).start();
        sleepForEver();
    }

    private Program() {
    }
}
