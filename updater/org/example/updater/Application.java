package org.example.updater;

import java.io.File;
import java.io.IOException;
import java.lang.reflect.InvocationTargetException;
import java.net.MalformedURLException;
import java.net.URL;
import java.net.URLClassLoader;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/**
 * An installed version of the application, ready to be started.
 *
 * <p>It runs inside the updater's own Java, from a class loader of its own: that is the process the
 * launch made for it, with the runtime's JVM options applied, its place in the Dock and its
 * open-URL events, and a second Java would cost its start and its memory. Only what a running JVM
 * cannot give any more, memory settings, JVM options of the application or a process of its own,
 * makes it a child process of the same runtime.
 */
final class Application {
  private final UpdateFolder updates;
  private final File folder;
  private final LaunchFile launchFile;
  private final List<String> arguments;
  private final List<String> rememberedOptions;
  private final File program;
  private final Map<String, String> systemProperties = new LinkedHashMap<>();

  /** {@code handedOn} are the arguments that follow the application's own. */
  Application(
      UpdateFolder updates, File folder, List<String> handedOn, LaunchProperties properties)
      throws Problem {
    this.updates = updates;
    this.folder = folder;
    launchFile = LaunchFile.of(folder);
    if (launchFile.mainClass.isEmpty()) {
      throw new Problem("The launch file in " + folder + " names no main class.");
    }
    arguments = new ArrayList<>(launchFile.arguments);
    arguments.addAll(handedOn);
    rememberedOptions = properties.rememberedOptions();
    program = new File(properties.packaged("launched_from_dynprops"));
    systemProperties.put("quorvane.app_dir", folder.getPath());
    systemProperties.put("quorvane.app_version", VersionFolders.versionOf(folder));
    String name = properties.required("app_name");
    long version = VersionFolders.numberOf(folder);
    systemProperties.put("quorvane.update_file", updates.notice(name, version).getPath());
    systemProperties.put("quorvane.started_file", updates.started(name, version).getPath());
    if (properties.given("url_req") != null) {
      systemProperties.put("quorvane.url_req", properties.given("url_req"));
    }
  }

  boolean needsProcessOfItsOwn() {
    return launchFile.mustFork || !launchFile.jvmOptions.isEmpty()
        || launchFile.maximumHeapMegabytes >= 1 || launchFile.initialHeapMegabytes >= 1;
  }

  private List<File> classPath() {
    List<File> files = new ArrayList<>();
    for (String entry : launchFile.classPath) {
      files.add(new File(folder, entry));
    }
    return files;
  }

  private String classPathText() {
    StringBuilder text = new StringBuilder();
    for (File file : classPath()) {
      text.append(text.length() == 0 ? "" : File.pathSeparator).append(file);
    }
    return text.toString();
  }

  /** Runs the application's main method here; what it throws goes on to the caller. */
  void runInside() throws Throwable {
    System.setProperty("java.class.path", classPathText());
    for (Map.Entry<String, String> property : systemProperties.entrySet()) {
      System.setProperty(property.getKey(), property.getValue());
    }
    try {
      ClassLoader loader = loader();
      Thread.currentThread().setContextClassLoader(loader);
      Class.forName(launchFile.mainClass, true, loader)
          .getMethod("main", String[].class)
          .invoke(null, (Object) arguments.toArray(new String[0]));
    } catch (ClassNotFoundException | NoSuchMethodException e) {
      throw new Problem("The application's main class cannot be run: " + e);
    } catch (InvocationTargetException e) {
      throw e.getCause();
    }
  }

  /** The application sees the runtime's classes and its own, not the updater's. */
  private ClassLoader loader() throws MalformedURLException {
    List<URL> urls = new ArrayList<>();
    for (File file : classPath()) {
      urls.add(file.toURI().toURL());
    }
    return new URLClassLoader(
        urls.toArray(new URL[0]), ClassLoader.getSystemClassLoader().getParent());
  }

  /** Runs the application as a child process and returns its exit status. */
  int runAsChild() throws Problem, InterruptedException {
    return runAsChild(Process::waitFor);
  }

  /** The same with {@code wait}, which waits for the process and returns the status. */
  int runAsChild(Waiting wait) throws Problem, InterruptedException {
    Process process;
    try {
      process = new ProcessBuilder(command()).inheritIO().start();
    } catch (IOException e) {
      throw new Problem("The application's process cannot be started: " + e.getMessage());
    }
    Runnable forget = InUse.noteChild(updates, process);
    int status = wait.forEndOf(process);
    forget.run();
    return status;
  }

  interface Waiting {
    int forEndOf(Process process) throws InterruptedException;
  }

  private List<String> command() {
    List<String> command = new ArrayList<>();
    command.add(System.getProperty("java.home") + "/bin/java");
    if (launchFile.maximumHeapMegabytes >= 1) {
      command.add("-Xmx" + launchFile.maximumHeapMegabytes + "m");
    }
    if (launchFile.initialHeapMegabytes >= 1) {
      command.add("-Xms" + launchFile.initialHeapMegabytes + "m");
    }
    command.addAll(DockOptions.of(launchFile, folder, program));
    command.addAll(rememberedOptions);
    command.addAll(launchFile.jvmOptions);
    systemProperties.forEach((key, value) -> command.add("-D" + key + "=" + value));
    command.add("-cp");
    command.add(classPathText());
    command.add(launchFile.mainClass);
    command.addAll(arguments);
    return command;
  }
}
