#include "tests/support/java_runtime.h"

#include <filesystem>

#include "tests/support/files.h"
#include "tests/support/product_system.h"

namespace fs = std::filesystem;

namespace test {

static const fs::path kRuntime = testRuntime();

static void copyJava(const fs::path& folder) {
  fs::create_directories(folder / "bin");
  fs::copy_file(kRuntime / "bin/java", folder / "bin/java");
  fs::create_directory_symlink(kRuntime / "conf", folder / "conf");
}

void makeRuntime(const std::string& folder) {
  copyJava(folder);
  fs::create_directory_symlink(kRuntime / "lib", fs::path(folder) / "lib");
}

void makeRuntimeForProcessesOnly(const std::string& folder) {
  copyJava(folder);
  const fs::path lib = fs::path(folder) / "lib";
  fs::create_directories(lib);
  for (const auto& entry : fs::directory_iterator(kRuntime / "lib")) {
    const std::string name = entry.path().filename();
    if (name == "server") {
      // Copied, since Java looks for the rest of its runtime beside the file that a link leads to.
      fs::copy(entry.path(), lib / "client", fs::copy_options::recursive);
    } else if (name != "jvm.cfg") {
      fs::create_symlink(entry.path(), lib / name);
    }
  }
  writeFile(lib / "jvm.cfg", "-client KNOWN\n");
}

void makeRuntimeOfText(const std::string& folder) {
  writeFile(folder + "/bin/java", "java", 0755);
  for (const char* name :
       {"lib/jvm.cfg", "lib/server/libjvm.dylib", "lib/modules", "lib/jrt-fs.jar", "release"}) {
    writeFile(folder + "/" + name, "content");
  }
}

}  // namespace test
