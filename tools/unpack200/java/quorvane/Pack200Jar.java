package quorvane;

import java.io.BufferedOutputStream;
import java.io.DataInputStream;
import java.io.IOException;
import java.io.InputStream;
import java.io.OutputStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Enumeration;
import java.util.jar.JarEntry;
import java.util.jar.JarFile;
import org.apache.commons.compress.harmony.pack200.Archive;
import org.apache.commons.compress.harmony.pack200.Pack200Exception;
import org.apache.commons.compress.harmony.pack200.PackingOptions;

/**
 * Packs a jar to a pack200 file, not compressed any further. Classes come back equal in meaning,
 * not in bytes, so a signed jar must not be packed.
 */
public final class Pack200Jar {
  // The library drops what younger class files need to be verified: those go in as they are.
  private static final int YOUNGEST_PACKED_CLASS = 49;

  private Pack200Jar() {}

  public static void main(String[] arguments) {
    Conversion.runProgram("pack200", arguments, Pack200Jar::pack);
  }

  private static void pack(Path in, Path out) throws IOException {
    try (JarFile jar = new JarFile(in.toFile());
        OutputStream packed = new BufferedOutputStream(Files.newOutputStream(out))) {
      PackingOptions options = new PackingOptions();
      options.setGzip(false);
      options.setKeepFileOrder(true);
      passYoungerClasses(jar, options);
      new Archive(jar, packed, options).pack();
    } catch (Pack200Exception error) {
      throw new IOException("cannot be packed: " + error.getMessage(), error);
    }
  }

  private static void passYoungerClasses(JarFile jar, PackingOptions options) throws IOException {
    for (Enumeration<JarEntry> entries = jar.entries(); entries.hasMoreElements(); ) {
      JarEntry entry = entries.nextElement();
      if (!entry.getName().endsWith(".class")) {
        continue;
      }
      try (InputStream in = jar.getInputStream(entry)) {
        if (classVersion(in) > YOUNGEST_PACKED_CLASS) {
          options.addPassFile(entry.getName());
        }
      }
    }
  }

  private static int classVersion(InputStream classFile) throws IOException {
    DataInputStream data = new DataInputStream(classFile);
    data.readInt(); // magic
    data.readUnsignedShort(); // minor version
    return data.readUnsignedShort();
  }
}
