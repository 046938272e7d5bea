package org.example.updater;

import java.io.File;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;

/**
 * Starts the newest installed version of the application that can be used; where none is installed,
 * it has one fetched first.
 *
 * <p>Arguments: the launch properties file, the extra arguments of the updater's own launch file,
 * then the command line of the program that launched it, which begins with that program's own path.
 *
 * <p>The application's start comes first: what looks for updates is loaded when it is running, or
 * when it has to wait for them. On the way to it there is no lambda: the first one costs more than all
 * the rest.
 */
public final class GenericUpdater {
  private static final int FAILED = 1;
  private static final int MISTAKEN = 2;
  private static final int MOST_CHOICES = 10;
  private static final long OLD_AFTER_MILLISECONDS = 24L * 60 * 60 * 1000;

  private final LaunchProperties properties;
  private final File propertiesFile;
  private final File ownFolder;
  private final List<String> arguments;
  private final UpdateFolder updates;
  private final String name;
  private final boolean isSilent;
  private ProgressView splash = ProgressView.NONE;

  public static void main(String[] arguments) throws Throwable {
    long start = System.nanoTime();
    try {
      if (Arrays.asList(arguments).contains("--install") && System.getenv(UPDATER_INSTALLS) != null) {
        System.err.println("[Updater] This installer cannot install updates.");
        System.exit(MISTAKEN);
      }
      if (arguments.length == 0) {
        throw new Problem("The first argument must name the launch properties file.");
      }
      new GenericUpdater(arguments).run(start);
    } catch (Problem e) {
      System.err.println("[Updater] Cannot start the application. " + e.getMessage());
      System.exit(FAILED);
    }
  }

  /**
   * Set where the updater runs an installer's executable to install something. One that does not know
   * how takes the words for its application's and launches: that must not go on.
   */
  static final String UPDATER_INSTALLS = "QUORVANE_UPDATER_INSTALLS";

  private GenericUpdater(String[] arguments) throws Problem {
    propertiesFile = new File(arguments[0]);
    properties = LaunchProperties.read(propertiesFile);
    ownFolder = new File(properties.required("app_dir")).getAbsoluteFile();
    this.arguments = Arrays.asList(arguments).subList(1, arguments.length);
    updates = new UpdateFolder(ownFolder.getParentFile());
    name = properties.required("app_name");
    isSilent = properties.packaged("show_no_ui").equals("true");
  }

  private void run(long start) throws Throwable {
    deleteOldPropertiesFiles();
    if (!isSilent) {
      splash = showSplash(new File(ownFolder, "nativesplash.png"), false);
    }
    if (Settings.mayCheckBeforeStart(ownFolder)) {
      checkBeforeStart();
    }
    File folder = holdApplication();
    if (folder == null) {
      fetchFirst();
      folder = requireInstalled(holdApplication());
    }
    InUse.hold(updates, ownFolder);
    RunningRuntime.hold(updates);
    start(folder, start);
  }

  private void start(File folder, long start) throws Throwable {
    Application application = new Application(updates, folder, handedOn(), properties);
    if (!isSilent) {
      waitUntil(start + properties.number("min_splash_ms") * 1_000_000L);
    }
    splash.close();
    BackgroundCheck.schedule(properties, propertiesFile, ownFolder);
    List<File> tried = onTrial(folder);
    if (!tried.isEmpty()) {
      long millis = new Settings(ownFolder).trialMillis();
      File started = updates.started(name, VersionFolders.numberOf(folder));
      System.exit(application.runAsChild(new Trial(updates, tried, started, millis)::watch));
    }
    if (application.needsProcessOfItsOwn()) {
      System.exit(application.runAsChild());
    }
    application.runInside();
  }

  /** What an update brought of the application and the runtime, and may be given up again. */
  private List<File> onTrial(File folder) throws Problem {
    List<File> tried = new ArrayList<>();
    addIfOnTrial(tried, folder, name);
    File runtime = RunningRuntime.folderIn(updates);
    String runtimeName = properties.required("jre_name");
    if (runtime != null && VersionFolders.isOf(runtime, runtimeName)) {
      addIfOnTrial(tried, runtime, runtimeName);
    }
    return tried;
  }

  private void addIfOnTrial(List<File> tried, File folder, String component) {
    long version = VersionFolders.numberOf(folder);
    Markers markers = new Markers(updates, component);
    if (markers.isOnTrial(version) && markers.hasOneBefore(version)) {
      tried.add(folder);
    }
  }

  /** Shows the image where runtime and machine have windows; returns what hides it again. */
  private static ProgressView showSplash(File image, boolean evenWithoutImage) {
    try {
      return image.isFile() || evenWithoutImage ? SplashWindow.open(image) : ProgressView.NONE;
    } catch (Error | RuntimeException e) {
      System.err.println("[Updater] No splash: " + e);
      return ProgressView.NONE;
    }
  }

  /**
   * Chooses the version to start and marks it as in use. Another process may remove an old version
   * between the two. Returns null when none is installed that may start.
   */
  private File holdApplication() throws Problem {
    for (int i = 0; i < MOST_CHOICES; i++) {
      List<File> installed = VersionFolders.newestFirst(updates.master, name);
      File chosen = new Markers(updates, name).choose(installed);
      if (chosen == null) {
        return null;
      }
      if (InUse.hold(updates, chosen)) {
        sayIfPassedOver(installed.get(0), chosen);
        return chosen;
      }
    }
    throw new Problem("The versions of " + name + " in " + updates.master + " keep disappearing.");
  }

  private void sayIfPassedOver(File newest, File chosen) {
    if (chosen != newest) {
      boolean isSkipped = new Markers(updates, name).isSkipped(VersionFolders.numberOf(newest));
      System.err.println(
          "[Updater] Version " + VersionFolders.versionOf(newest) + " of " + name
              + (isSkipped ? " failed to start twice in a row" : " is damaged") + "; version "
              + VersionFolders.versionOf(chosen) + " is used"
              + (isSkipped ? " until a newer one exists." : "."));
    }
  }

  private void checkBeforeStart() throws Problem, InterruptedException {
    Settings settings = new Settings(ownFolder);
    boolean isInstalled = VersionFolders.newest(updates.master, name) != null;
    if (isInstalled && settings.checksBeforeStart() && !updateUrl().isEmpty()) {
      update(UpdateRun.BEFORE_START);
    }
  }

  private void fetchFirst() throws Problem, InterruptedException {
    if (updateUrl().isEmpty()) {
      return;
    }
    String failure = update(UpdateRun.FIRST);
    if (!failure.isEmpty()) {
      throw new Problem(
          "No version of " + name + (isAnyThere() ? " that can start" : "") + " is installed in "
              + updates.master + ", and none can be fetched from " + updateUrl() + ". " + failure);
    }
  }

  private boolean isAnyThere() {
    return !VersionFolders.newestFirst(updates.master, name).isEmpty();
  }

  private String update(String mode) throws Problem, InterruptedException {
    ProgressView view = ProgressView.NONE;
    if (!isSilent) {
      splash.close();
      ProgressView window = showSplash(new File(ownFolder, "nativesplash.png"), true);
      view = ProgressView.of(window, new ProgressLine(System.out, System.console() != null));
    }
    return new UpdateProcess(properties, propertiesFile, ownFolder).run(mode, view);
  }

  private String updateUrl() {
    return UpdateSource.urlOf(properties, new Settings(ownFolder));
  }

  private File requireInstalled(File found) throws Problem {
    if (found != null) {
      return found;
    }
    if (isAnyThere()) {
      // Its launch file says best what is wrong.
      return VersionFolders.newestFirst(updates.master, name).get(0);
    }
    String where = " of " + name + " is installed in " + updates.master;
    if (properties.packaged("wrapper_app_version").isEmpty()) {
      throw new Problem("No version" + where + ", and its installer carries none. It would have to be"
          + " fetched from an update URL, of which none is set: install a version of " + name
          + " there, or use an installer that carries it.");
    }
    throw new Problem("No complete version" + where + ". Run its installer again.");
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
    String[] names = ownFolder.list();
    long before = System.currentTimeMillis() - OLD_AFTER_MILLISECONDS;
    for (String file : names == null ? new String[0] : names) {
      if (file.startsWith("QVLaunchProperties-")) {
        deleteIfOlder(new File(ownFolder, file), before);
      }
    }
  }

  private static void deleteIfOlder(File file, long time) {
    if (file.lastModified() < time && !file.delete()) {
      System.err.println("[Updater] Cannot delete " + file);
    }
  }

  private static void waitUntil(long nanoTime) throws InterruptedException {
    long left = nanoTime - System.nanoTime();
    if (left > 0) {
      Thread.sleep(left / 1_000_000L + 1);
    }
  }
}
