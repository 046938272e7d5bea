package org.example.updater;

import java.io.File;
import java.io.IOException;
import java.net.URL;
import java.nio.ByteBuffer;
import java.nio.channels.FileChannel;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.OpenOption;
import java.nio.file.StandardCopyOption;
import java.nio.file.StandardOpenOption;
import java.util.Arrays;
import java.util.HashMap;
import java.util.HashSet;
import java.util.Map;
import java.util.Set;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/**
 * Downloads an archive into a file that survives the process: what is there is not asked for again,
 * as long as the site says that it is still the same archive.
 */
final class Download {
  private static final Set<OpenOption> WRITE =
      new HashSet<>(
          Arrays.asList(
              StandardOpenOption.CREATE, StandardOpenOption.WRITE, LinkOption.NOFOLLOW_LINKS));
  private static final Pattern RANGE = Pattern.compile("bytes (\\d{1,18})-(\\d{1,18})/(\\d{1,18})");

  /** What has to stay free for the system and for what the application writes. */
  static final long FREE_BYTES = 16L << 20;

  private final UpdateFolder folder;
  private final Web web;
  private final Settings settings;
  private final Progress progress;
  private final URL url;
  private final String component;
  private final long version;
  private final File part;
  private final File validator;

  Download(
      UpdateFolder folder,
      Web web,
      Settings settings,
      Progress progress,
      URL url,
      String component,
      long version) {
    this.folder = folder;
    this.web = web;
    this.settings = settings;
    this.progress = progress;
    this.url = url;
    this.component = component;
    this.version = version;
    part = new File(folder.downloads(), component + "-" + version + ".part");
    validator = new File(folder.downloads(), component + "-" + version + ".validator");
  }

  /** Returns the whole archive; how often it is tried is up to {@code retries}. */
  File fetch(Retries retries) throws Problem, InterruptedException {
    File whole = new File(folder.downloads(), component + "-" + version + ".archive");
    if (!folder.make(folder.downloads())) {
      throw new Problem("The folder " + folder.downloads() + " cannot be made.");
    }
    long end = System.nanoTime() + settings.longestMillis() * 1_000_000L;
    while (!Files.isRegularFile(whole.toPath(), LinkOption.NOFOLLOW_LINKS)) {
      long before = part.length();
      String failure;
      long asked = 0;
      try (Http.Answer answer = web.get(url, conditions())) {
        failure = take(answer, (end - System.nanoTime()) / 1_000_000L);
        asked = Retries.asked(answer.header("Retry-After"), System.currentTimeMillis());
      } catch (IOException e) {
        failure = "The download of " + url + " broke off: " + e.getMessage();
      }
      if (failure == null) {
        finish(whole);
        break;
      }
      if (part.length() >= before + Settings.SLOWEST_BYTES) {
        retries.progressed();
      }
      retries.pauseAfter(failure, asked);
    }
    return whole;
  }

  private void finish(File whole) throws Problem {
    try {
      validator.delete();
      Files.move(part.toPath(), whole.toPath(), StandardCopyOption.ATOMIC_MOVE);
    } catch (IOException e) {
      throw new Problem("The downloaded archive cannot be put in its place: " + e);
    }
  }

  /** Asks for the rest where the site said how to tell whether it is the rest of the same. */
  private Map<String, String> conditions() {
    Map<String, String> headers = new HashMap<>();
    String known = UpdateFolder.textOf(validator);
    long have = Files.isRegularFile(part.toPath(), LinkOption.NOFOLLOW_LINKS) ? part.length() : 0;
    if (have > 0 && SiteCheck.isHeaderText(known)) {
      headers.put("Range", "bytes=" + have + "-");
      headers.put("If-Range", known);
    }
    return headers;
  }

  /** Returns null when the archive is whole, otherwise why not. */
  private String take(Http.Answer answer, long millis) throws IOException, Problem {
    int status = answer.status();
    if (status == 416) {
      discard();
      return "The site has no more of " + url + " than was there; it is asked for from the start.";
    }
    if (status != 200 && status != 206) {
      String failure = "The site answered " + status + " to " + url + ".";
      if (!Retries.isWorthIt(status)) {
        throw new Problem(failure);
      }
      return failure;
    }
    requireArchive(answer);
    long start = 0;
    long total = length(answer);
    if (status == 206) {
      Matcher range = RANGE.matcher(String.valueOf(answer.header("Content-Range")));
      start = part.length();
      if (!range.matches() || Long.parseLong(range.group(1)) != start) {
        discard();
        return "The site sent another part of " + url + " than was asked for.";
      }
      total = Long.parseLong(range.group(3));
    }
    requireRoom(start, total);
    if (start == 0) {
      discard();
      rememberValidator(answer);
    }
    return write(answer, start, total, millis);
  }

  /** A page of words is no archive, as from a network that wants to be signed in to first. */
  private void requireArchive(Http.Answer answer) throws Problem {
    String type = answer.header("Content-Type");
    if (type != null && type.toLowerCase(java.util.Locale.ROOT).startsWith("text/")) {
      throw new Problem(
          "The site sent a text in place of an archive: " + url + " is " + UpdateLog.onOneLine(type));
    }
    String coding = answer.header("Content-Encoding");
    if (coding != null && !coding.equalsIgnoreCase("identity")) {
      throw new Problem("The site sent " + url + " in an encoding that was not asked for.");
    }
  }

  private static long length(Http.Answer answer) {
    String text = answer.header("Content-Length");
    return text == null ? Version.NONE : Version.of(text.trim());
  }

  private void requireRoom(long start, long total) throws Problem {
    if (total > settings.largestArchive()) {
      discard();
      throw new Problem(
          "The archive is too large: " + url + " has " + total + " bytes, "
              + settings.largestArchive() + " are taken at most.");
    }
    long free = folder.downloads().getUsableSpace();
    if (free > 0 && total - start > free - FREE_BYTES) {
      throw new Problem(
          "The disk is too full for " + url + ", of which " + (total - start)
              + " bytes are still to come: " + free + " bytes are free.");
    }
  }

  private void rememberValidator(Http.Answer answer) throws IOException {
    String tag = answer.header("ETag");
    String known = tag == null || tag.startsWith("W/") ? answer.header("Last-Modified") : tag;
    if (SiteCheck.isHeaderText(known)) {
      folder.replace(validator, known);
    }
  }

  private String write(Http.Answer answer, long start, long total, long millis)
      throws IOException, Problem {
    long done = start;
    byte[] buffer = new byte[64 * 1024];
    try (FileChannel out = FileChannel.open(part.toPath(), WRITE);
        Body body = new Body(answer, settings.slowMillis(), Settings.SLOWEST_BYTES, millis)) {
      folder.openToAll(part, false);
      out.truncate(start).position(start);
      progress.downloaded(component, version, done, total);
      for (int count = body.read(buffer); count >= 0; count = body.read(buffer)) {
        done += count;
        requireBounded(done, total);
        store(out, buffer, count);
        progress.downloaded(component, version, done, total);
      }
    }
    return total < 0 || done == total
        ? null
        : "The connection for " + url + " ended after " + done + " of " + total + " bytes.";
  }

  private void requireBounded(long done, long total) throws Problem {
    if (done > settings.largestArchive() || total >= 0 && done > total) {
      discard();
      throw new Problem("The archive is too large: " + url + " goes on after " + done + " bytes.");
    }
  }

  private void store(FileChannel out, byte[] buffer, int count) throws Problem {
    try {
      ByteBuffer bytes = ByteBuffer.wrap(buffer, 0, count);
      while (bytes.hasRemaining()) {
        out.write(bytes);
      }
    } catch (IOException e) {
      if (folder.downloads().getUsableSpace() < FREE_BYTES) {
        discard();
      }
      throw new Problem("What was downloaded cannot be written to " + part + ": " + e.getMessage());
    }
  }

  private void discard() {
    part.delete();
    validator.delete();
  }
}
