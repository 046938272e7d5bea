package org.example.updater;

import java.io.Closeable;
import java.io.IOException;
import java.io.InputStream;

/**
 * The body of an answer, read under a watch: where too little arrives in each span of time, or all of
 * it takes too long, reading fails.
 */
final class Body implements Closeable {
  private final Http.Answer answer;
  private final InputStream in;
  private final Thread watch;
  private volatile long received;
  private volatile String failure;

  /** In each {@code spanMillis} at least {@code least} bytes have to arrive. */
  Body(Http.Answer answer, long spanMillis, long least, long longestMillis) throws IOException {
    this.answer = answer;
    in = answer.body();
    watch = new Thread(() -> watch(spanMillis, least, longestMillis), "updater-pace");
    watch.setDaemon(true);
    watch.start();
  }

  private void watch(long spanMillis, long least, long longestMillis) {
    long end = System.nanoTime() + longestMillis * 1_000_000L;
    try {
      while (failure == null) {
        long before = received;
        long left = (end - System.nanoTime()) / 1_000_000L;
        Thread.sleep(Math.max(1, Math.min(spanMillis, left)));
        if (left <= spanMillis) {
          failure = "It took longer than " + longestMillis + " ms.";
        } else if (received - before < least) {
          failure = "Less than " + least + " bytes came in " + spanMillis + " ms.";
        }
      }
      answer.close();
    } catch (InterruptedException e) {
      // All was read.
    }
  }

  /** As {@link InputStream#read(byte[])}, with the watch's words where it ended the reading. */
  int read(byte[] buffer) throws IOException {
    int count;
    try {
      count = in.read(buffer);
    } catch (IOException | RuntimeException e) {
      throw failure == null ? new IOException(e.toString(), e) : new IOException(failure, e);
    }
    if (failure != null) {
      throw new IOException(failure);
    }
    received += Math.max(0, count);
    return count;
  }

  @Override
  public void close() {
    watch.interrupt();
    answer.close();
  }
}
