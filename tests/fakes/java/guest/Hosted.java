package guest;

import java.io.File;

/**
 * A program that looks at the process that hosts it. Every argument that is one of these is a step,
 * and is answered with a line that begins with "[Hosted] "; all others are passed over:
 *
 * <pre>
 *   library=FILE    loads the native methods from that file
 *   thread          "first thread" or "second thread": where main() runs
 *   call            "called back in N ms": how long a call to the main thread took, after a first one
 *                   for which it may have had to start its event loop; "not called back" after a
 *                   minute
 *   hold            "holding": the main thread stays in a loop for good
 *   depth           "depth N": how deep a method can call itself
 *   variable=NAME   "NAME VALUE" or "NAME is not set"; PID in the name is this process's id
 *   property=NAME   the same for a system property
 *   wait=FILE       "waiting", then "waited" when the file exists, or after a minute
 * </pre>
 */
public final class Hosted {
    private static final long LONGEST_MILLISECONDS = 60_000;

    private Hosted() {
    }

    private static native boolean isFirstThread();

    private static native boolean callMainThread();

    private static native void holdMainThread();

    public static void main(String[] arguments) throws Exception {
        for (String argument : arguments) {
            int at = argument.indexOf('=');
            String step = at < 0 ? argument : argument.substring(0, at);
            perform(step, argument.substring(at + 1));
        }
    }

    private static void perform(String step, String value) throws Exception {
        switch (step) {
            case "library":
                System.load(value);
                break;
            case "thread":
                say(isFirstThread() ? "first thread" : "second thread");
                break;
            case "call":
                say(timeOfCall() < 0 ? "not called back" : "called back in " + timeOfCall() + " ms");
                break;
            case "hold":
                holdMainThread();
                say("holding");
                break;
            case "depth":
                say("depth " + depth());
                break;
            case "variable":
                say(value, System.getenv(
                        value.replace("PID", String.valueOf(ProcessHandle.current().pid()))));
                break;
            case "property":
                say(value, System.getProperty(value));
                break;
            case "wait":
                say("waiting");
                waitFor(new File(value));
                say("waited");
                break;
            default:
        }
    }

    private static void say(String name, String value) {
        say(name + " " + (value == null ? "is not set" : value));
    }

    private static void say(String text) {
        System.out.println("[Hosted] " + text);
        System.out.flush();
    }

    // Milliseconds, or -1 when the main thread does not answer.
    private static long timeOfCall() throws InterruptedException {
        long start = System.nanoTime();
        Thread caller = new Thread(Hosted::callMainThread);
        caller.setDaemon(true);
        caller.start();
        caller.join(LONGEST_MILLISECONDS);
        return caller.isAlive() ? -1 : (System.nanoTime() - start) / 1_000_000;
    }

    private static int reached;

    private static int depth() {
        reached = 0;
        try {
            descend();
        } catch (StackOverflowError e) {
            return reached;
        }
        return -1;
    }

    private static void descend() {
        reached++;
        descend();
    }

    private static void waitFor(File file) throws InterruptedException {
        long end = System.nanoTime() + LONGEST_MILLISECONDS * 1_000_000;
        while (!file.exists() && System.nanoTime() < end) {
            Thread.sleep(20);
        }
    }
}
