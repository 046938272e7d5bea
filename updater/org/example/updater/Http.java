package org.example.updater;

import java.io.Closeable;
import java.io.IOException;
import java.io.InputStream;
import java.net.URL;
import java.util.Map;

/** One GET request, without redirects. The runtime decides what serves it. */
interface Http {
  /**
   * Sends the request and waits for the head of the answer, at most {@code answerMillis} for each of
   * connection and head.
   */
  Answer get(URL url, Map<String, String> headers, int answerMillis)
      throws IOException, InterruptedException;

  /** An answer. Closing it ends a read in another thread, if need be after {@code answerMillis}. */
  interface Answer extends Closeable {
    int status();

    /** Returns the first header of that name, or null. */
    String header(String name);

    InputStream body() throws IOException;

    @Override
    void close();
  }

  /** The runtime's HTTP client where it has one; Java 8, or a small runtime, may have none. */
  static Http ofRuntime() {
    try {
      Class.forName("java.net.http.HttpClient"); // or a request would be the first to miss it
      return (Http)
          Class.forName("org.example.updater.ClientHttp").getDeclaredConstructor().newInstance();
    } catch (ReflectiveOperationException | LinkageError e) {
      return new ConnectionHttp();
    }
  }
}
