package org.example.updater;

import com.sun.net.httpserver.HttpExchange;
import com.sun.net.httpserver.HttpServer;
import java.io.Closeable;
import java.io.IOException;
import java.io.OutputStream;
import java.net.InetAddress;
import java.net.InetSocketAddress;
import java.net.URL;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.Collections;
import java.util.List;
import java.util.Map;
import java.util.concurrent.ConcurrentHashMap;
import java.util.concurrent.ExecutorService;
import java.util.concurrent.Executors;

/** A site on 127.0.0.1, whose answers a test chooses. It notes the requests. */
final class TestSite implements Closeable {
  interface Page {
    void answer(HttpExchange exchange) throws IOException, InterruptedException;
  }

  private final HttpServer server;
  private final ExecutorService threads = Executors.newCachedThreadPool();
  private final Map<String, Page> pages = new ConcurrentHashMap<>();
  final List<Request> requests = Collections.synchronizedList(new ArrayList<>());

  static final class Request {
    final String path;
    final Map<String, List<String>> headers;

    Request(HttpExchange exchange) {
      path = exchange.getRequestURI().getRawPath();
      headers = new java.util.TreeMap<>(String.CASE_INSENSITIVE_ORDER);
      headers.putAll(exchange.getRequestHeaders());
    }

    String header(String name) {
      List<String> values = headers.get(name);
      return values == null ? null : values.get(0);
    }
  }

  TestSite() throws IOException {
    server = HttpServer.create(new InetSocketAddress(InetAddress.getByName("127.0.0.1"), 0), 0);
    server.setExecutor(threads);
    server.createContext("/", this::answer);
    server.start();
  }

  private void answer(HttpExchange exchange) throws IOException {
    Request request = new Request(exchange);
    requests.add(request);
    try {
      pages.getOrDefault(request.path.replaceFirst("^/", ""), status(404)).answer(exchange);
    } catch (InterruptedException e) {
      Thread.currentThread().interrupt();
    } finally {
      exchange.close();
    }
  }

  String address() {
    return "http://127.0.0.1:" + server.getAddress().getPort() + "/";
  }

  URL url(String path) throws IOException {
    return new URL(address() + path);
  }

  void put(String path, Page page) {
    pages.put(path, page);
  }

  long count(String part) {
    synchronized (requests) {
      return requests.stream().filter(request -> request.path.contains(part)).count();
    }
  }

  Request last() {
    return requests.get(requests.size() - 1);
  }

  static Page status(int status, String... headers) {
    return exchange -> {
      set(exchange, headers);
      exchange.sendResponseHeaders(status, -1);
    };
  }

  private static void set(HttpExchange exchange, String... headers) {
    for (int i = 0; i < headers.length; i += 2) {
      exchange.getResponseHeaders().set(headers[i], headers[i + 1]);
    }
  }

  static Page bytes(byte[] content, String... headers) {
    return exchange -> {
      set(exchange, headers);
      exchange.sendResponseHeaders(200, content.length == 0 ? -1 : content.length);
      exchange.getResponseBody().write(content);
    };
  }

  static Page text(String content, String... headers) {
    return bytes(content.getBytes(java.nio.charset.StandardCharsets.ISO_8859_1), headers);
  }

  /** A file that may be asked for in part, and of which at most {@code most} bytes are sent. */
  static Page ranges(byte[] content, String tag, int most) {
    return exchange -> {
      String range = exchange.getRequestHeaders().getFirst("Range");
      boolean isSame = tag.equals(exchange.getRequestHeaders().getFirst("If-Range"));
      int start = range == null || !isSame ? 0 : Integer.parseInt(range.replaceAll("\\D", ""));
      set(exchange, "ETag", tag, "Content-Type", "application/octet-stream");
      if (start > 0) {
        int last = content.length - 1;
        set(exchange, "Content-Range", "bytes " + start + "-" + last + "/" + content.length);
      }
      exchange.sendResponseHeaders(start > 0 ? 206 : 200, content.length - start);
      OutputStream out = exchange.getResponseBody();
      out.write(Arrays.copyOfRange(content, start, Math.min(content.length, start + most)));
      out.flush();
    };
  }

  @Override
  public void close() {
    server.stop(0);
    threads.shutdownNow();
  }
}
