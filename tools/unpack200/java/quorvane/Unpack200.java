package quorvane;

import java.io.ByteArrayInputStream;
import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.io.InputStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.jar.JarOutputStream;
import java.util.zip.GZIPInputStream;
import org.apache.commons.compress.harmony.unpack200.Archive;

/** Unpacks a pack200 file, plain or compressed with gzip, to the jar that it was made of. */
public final class Unpack200 {
  private static final int PACK200_MAGIC = 0xCAFED00D;
  private static final int GZIP_MAGIC = 0x1F8B;

  private Unpack200() {}

  public static void main(String[] arguments) {
    Conversion.runProgram("unpack200", arguments, Unpack200::unpack);
  }

  private static void unpack(Path in, Path out) throws IOException {
    byte[] packed = withoutGzip(Files.readAllBytes(in));
    // Without this the library copies what is no pack200 file as an empty jar.
    if (magicOf(packed) != PACK200_MAGIC) {
      throw new IOException("is no pack200 file");
    }
    try (JarOutputStream jar = new JarOutputStream(Files.newOutputStream(out))) {
      // The library looks into the streams of java.io that wrap others, which a runtime since Java
      // 16 does not let it do; this one it takes as it is.
      new Archive(new ByteArrayInputStream(packed), jar).unpack();
    } catch (IOException | RuntimeException error) {
      throw error;
    } catch (Exception error) {
      throw new IOException("is damaged: " + error, error);
    }
  }

  private static int magicOf(byte[] bytes) {
    int magic = 0;
    for (int i = 0; i < 4 && i < bytes.length; ++i) {
      magic = magic << 8 | bytes[i] & 0xFF;
    }
    return magic;
  }

  private static byte[] withoutGzip(byte[] bytes) throws IOException {
    if (magicOf(bytes) >>> 16 != GZIP_MAGIC) {
      return bytes;
    }
    ByteArrayOutputStream plain = new ByteArrayOutputStream();
    try (InputStream in = new GZIPInputStream(new ByteArrayInputStream(bytes))) {
      byte[] chunk = new byte[65536];
      for (int count = in.read(chunk); count >= 0; count = in.read(chunk)) {
        plain.write(chunk, 0, count);
      }
    }
    return plain.toByteArray();
  }
}
