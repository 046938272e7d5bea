package org.example.updater;

import java.util.Arrays;
import java.util.List;
import org.junit.Rule;
import org.junit.runner.RunWith;
import org.junit.runners.Parameterized;

/** Tests that run with the HTTP client of newer runtimes, and with what the others have. */
@RunWith(Parameterized.class)
public abstract class BothClients {
  @Parameterized.Parameters(name = "{0}")
  public static List<String> clients() {
    return Arrays.asList("ClientHttp", "ConnectionHttp");
  }

  @Parameterized.Parameter public String client;

  @Rule public final TestFolder folder = new TestFolder();

  final Http http() throws ReflectiveOperationException {
    return (Http)
        Class.forName("org.example.updater." + client).getDeclaredConstructor().newInstance();
  }
}
