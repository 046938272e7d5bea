package org.example.updater;

import java.io.File;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;

/**
 * Starts the newest installed version of the application.
 *
 * <p>Arguments: the launch properties file, the extra arguments of the updater's own launch file,
 * then the command line of the program that launched it, which begins with that program's own path.
 * A real updater would look for a newer version at the update URL first; this one starts what is
 * installed, and says so when nothing is.
 */
public final class GenericUpdater {
  private static final int FAILED = 1;
  private static final long OLD_AFTER_MILLISECONDS = 24L * 60 * 60 * 1000;

  private final LaunchProperties properties;
  private final File ownFolder;
  private final List<String> arguments;

  public static void main(String[] arguments) throws Throwable {
    long start = System.nanoTime();
    try {
      if (arguments.length == 0) {
        throw new Problem("The first argument must name the launch properties file.");
      }
      new GenericUpdater(arguments).run(start);
    } catch (Problem e) {
      System.err.println("[Updater] Cannot start the application. " + e.getMessage());
      System.exit(FAILED);
    }
  }

  private GenericUpdater(String[] arguments) throws Problem {
    properties = LaunchProperties.read(new File(arguments[0]));
    ownFolder = new File(properties.required("app_dir"));
    this.arguments = Arrays.asList(arguments).subList(1, arguments.length);
  }

  private void run(long start) throws Throwable {
    deleteOldPropertiesFiles();
    boolean silent = properties.packaged("show_no_ui").equals("true");
    Runnable hideSplash = silent ? () -> {} : showSplash(new File(ownFolder, "nativesplash.png"));
    Application application = new Application(newestApplication(), handedOn(), properties);
    if (!silent) {
      waitUntil(start + properties.number("min_splash_ms") * 1_000_000L);
    }
    hideSplash.run();
    if (application.needsProcessOfItsOwn()) {
      System.exit(application.runAsChild());
    }
    application.runInside();
  }

  /** Shows the image where runtime and machine have windows; returns what hides it again. */
  private static Runnable showSplash(File image) {
    try {
      return image.isFile() ? SplashWindow.show(image) : () -> {};
    } catch (Error | RuntimeException e) {
      System.err.println("[Updater] No splash: " + e);
      return () -> {};
    }
  }

  private File newestApplication() throws Problem {
    File master = ownFolder.getAbsoluteFile().getParentFile();
    String name = properties.required("app_name");
    File newest = VersionFolders.newest(master, name);
    if (newest != null) {
      return newest;
    }
    if (properties.packaged("wrapper_app_version").isEmpty()) {
      throw new Problem("No version of " + name + " is installed in " + master
          + ", and its installer carries none. It would have to be fetched from " + updateUrl()
          + ", which this updater does not do: install a version of " + name
          + " there, or use an installer that carries it.");
    }
    throw new Problem("No complete version of " + name + " is installed in " + master
        + ". Run its installer again.");
  }

  private String updateUrl() {
    String given = properties.given("update_url");
    String url = given == null ? properties.packaged("update_url") : given;
    return url.isEmpty() || url.equals("D") ? "an update URL, of which none is set" : url;
  }

  /** The command line's arguments for the application: without the launching program's path. */
  private List<String> handedOn() throws Problem {
    int own = Math.min(LaunchFile.of(ownFolder).arguments.size(), arguments.size());
    List<String> commandLine = new ArrayList<>(arguments.subList(own, arguments.size()));
    String program = new File(properties.packaged("launched_from_dynprops")).getName();
    if (!commandLine.isEmpty() && new File(commandLine.get(0)).getName().equals(program)) {
      commandLine.remove(0);
    }
    return commandLine;
  }

  /** Every launch leaves its properties file; the one of a start that still runs is young. */
  private void deleteOldPropertiesFiles() {
    File[] files = ownFolder.listFiles((folder, name) -> name.startsWith("QVLaunchProperties-"));
    long before = System.currentTimeMillis() - OLD_AFTER_MILLISECONDS;
    for (File file : files == null ? new File[0] : files) {
      if (file.lastModified() < before && !file.delete()) {
        System.err.println("[Updater] Cannot delete " + file);
      }
    }
  }

  private static void waitUntil(long nanoTime) throws InterruptedException {
    long left = nanoTime - System.nanoTime();
    if (left > 0) {
      Thread.sleep(left / 1_000_000L + 1);
    }
  }
}
