package org.example.updater;

import java.io.IOException;
import java.io.InputStream;
import java.net.ProxySelector;
import java.net.URI;
import java.net.URISyntaxException;
import java.net.URL;
import java.net.http.HttpClient;
import java.net.http.HttpRequest;
import java.net.http.HttpResponse;
import java.time.Duration;
import java.util.Map;

/** Requests through the HTTP client that runtimes have from Java 11 on. */
final class ClientHttp implements Http {
  private HttpClient client;

  @Override
  public Answer get(URL url, Map<String, String> headers, int answerMillis)
      throws IOException, InterruptedException {
    Duration patience = Duration.ofMillis(answerMillis);
    try {
      HttpRequest.Builder request = HttpRequest.newBuilder(new URI(url.toString()));
      headers.forEach(request::setHeader);
      request.timeout(patience.multipliedBy(2));
      return new ClientAnswer(
          client(patience).send(request.build(), HttpResponse.BodyHandlers.ofInputStream()));
    } catch (URISyntaxException | IllegalArgumentException e) {
      throw new IOException("This is no address on the web: " + url, e);
    }
  }

  private HttpClient client(Duration patience) {
    if (client == null) {
      HttpClient.Builder builder =
          HttpClient.newBuilder()
              .version(HttpClient.Version.HTTP_1_1)
              .followRedirects(HttpClient.Redirect.NEVER)
              .connectTimeout(patience);
      if (ProxySelector.getDefault() != null) {
        builder.proxy(ProxySelector.getDefault());
      }
      client = builder.build();
    }
    return client;
  }

  private static final class ClientAnswer implements Answer {
    private final HttpResponse<InputStream> response;

    ClientAnswer(HttpResponse<InputStream> response) {
      this.response = response;
    }

    @Override
    public int status() {
      return response.statusCode();
    }

    @Override
    public String header(String name) {
      return response.headers().firstValue(name).orElse(null);
    }

    @Override
    public InputStream body() {
      return response.body();
    }

    @Override
    public void close() {
      try {
        response.body().close();
      } catch (IOException e) {
        // What could not be closed is not read any further either.
      }
    }
  }
}
