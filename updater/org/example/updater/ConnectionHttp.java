package org.example.updater;

import java.io.ByteArrayInputStream;
import java.io.IOException;
import java.io.InputStream;
import java.net.HttpURLConnection;
import java.net.URL;
import java.net.URLConnection;
import java.util.Map;

/** Requests through {@link HttpURLConnection}, which every runtime has. */
final class ConnectionHttp implements Http {
  @Override
  public Answer get(URL url, Map<String, String> headers, int answerMillis) throws IOException {
    URLConnection opened = url.openConnection();
    if (!(opened instanceof HttpURLConnection)) {
      throw new IOException("This is no address on the web: " + url);
    }
    HttpURLConnection connection = (HttpURLConnection) opened;
    connection.setInstanceFollowRedirects(false);
    connection.setUseCaches(false);
    connection.setConnectTimeout(answerMillis);
    connection.setReadTimeout(answerMillis);
    headers.forEach(connection::setRequestProperty);
    // A head that comes byte by byte never meets the time-out of a read.
    Deadline deadline = new Deadline(2L * answerMillis, connection::disconnect);
    try {
      int status = connection.getResponseCode();
      if (status < 0) {
        throw new IOException("The answer is not HTTP.");
      }
      return new ConnectionAnswer(connection, status);
    } catch (RuntimeException e) {
      throw new IOException("The connection failed: " + e, e);
    } finally {
      deadline.close();
    }
  }

  private static final class ConnectionAnswer implements Answer {
    private final HttpURLConnection connection;
    private final int status;

    ConnectionAnswer(HttpURLConnection connection, int status) {
      this.connection = connection;
      this.status = status;
    }

    @Override
    public int status() {
      return status;
    }

    @Override
    public String header(String name) {
      return connection.getHeaderField(name);
    }

    @Override
    public InputStream body() throws IOException {
      InputStream body = status < 400 ? connection.getInputStream() : connection.getErrorStream();
      return body == null ? new ByteArrayInputStream(new byte[0]) : body;
    }

    @Override
    public void close() {
      connection.disconnect();
    }
  }
}
