package org.example.hello;

import java.nio.file.Path;
import java.util.LinkedHashMap;
import java.util.Map;

/** What a Java program can see of the way it was started. */
final class Surroundings {
  private Surroundings() {}

  static Map<String, String> describe(String[] arguments) {
    Map<String, String> facts = new LinkedHashMap<>();
    facts.put("process", String.valueOf(ProcessHandle.current().pid()));
    facts.put("executable", ProcessHandle.current().info().command().orElse("unknown"));
    facts.put("thread", Thread.currentThread().getName());
    facts.put("runtime", System.getProperty("java.home"));
    facts.put("version", System.getProperty("java.version"));
    facts.put("class path", System.getProperty("java.class.path"));
    facts.put("hello.greeting", System.getProperty("hello.greeting", "not set"));
    facts.put("largest heap", Runtime.getRuntime().maxMemory() / (1 << 20) + " MB");
    facts.put("arguments", String.join(" | ", arguments));
    facts.put("folder", Path.of("").toAbsolutePath().toString());
    facts.put("home", System.getProperty("user.home"));
    return facts;
  }
}
