#include <cerrno>
#include <cstdlib>

#include "tools/formats/launch_file_writer.h"
#include "tools/system/input_error.h"

// A packager must report a broken launch file, so this reader is strict where the product's own is
// lenient.

namespace tools {

struct Fields {
  const std::string& bytes;
  size_t position = 0;
};

static std::string nextText(Fields* fields, const char* name) {
  const size_t end = fields->bytes.find('\0', fields->position);
  if (end == std::string::npos) {
    throw InputError("the launch file ends at byte " + std::to_string(fields->bytes.size()) +
                     " where " + name + " should be; it is truncated or not a launch file");
  }
  std::string text = fields->bytes.substr(fields->position, end - fields->position);
  fields->position = end + 1;
  return text;
}

static long nextNumber(Fields* fields, const char* name) {
  const size_t start = fields->position;
  const std::string text = nextText(fields, name);
  char* end = nullptr;
  errno = 0;
  const long number = strtol(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0' || errno != 0) {
    throw InputError("the launch file has \"" + text + "\" at byte " + std::to_string(start) +
                     " where the number " + name + " should be");
  }
  return number;
}

static std::vector<std::string> nextTexts(Fields* fields, const char* countName, const char* name) {
  const long count = nextNumber(fields, countName);
  if (count < 0) {
    throw InputError(std::string(countName) + " is " + std::to_string(count) +
                     ", which must not be negative");
  }
  std::vector<std::string> texts;
  for (long i = 0; i < count; ++i) {
    texts.push_back(nextText(fields, name));
  }
  return texts;
}

static void readNewerFields(Fields* fields, LaunchFile* file) {
  if (file->version >= 3) {
    file->compatibilityClass = nextText(fields, "Main Class JRECompatibility");
  }
  if (file->version >= 4) {
    file->postInstallClass = nextText(fields, "Main Class PostInstall");
    file->preUninstallClass = nextText(fields, "Main Class PreUninstall");
  }
  if (file->version >= 5) {
    file->jvmOptions = nextTexts(fields, "App JVM Option Count", "App JVM Option Entry");
  }
  if (file->version >= 6) {
    file->mustFork = nextNumber(fields, "Must Fork") == 1;
  }
}

LaunchFile decodeLaunchFile(const std::string& bytes) {
  Fields fields{bytes};
  LaunchFile file;
  file.version = nextNumber(&fields, "LaunchFile VER");
  file.mainClass = nextText(&fields, "Class");
  file.updateClass = nextText(&fields, "Class OnUpdate");
  file.appName = nextText(&fields, "App Name");
  file.icon = nextText(&fields, "OS ICNS");
  file.urlRequired = nextNumber(&fields, "URL Required") == 1;
  file.maximumHeapMegabytes = nextNumber(&fields, "jvmMem (old)");
  file.initialHeapMegabytes = nextNumber(&fields, "jvmStack (old)");
  file.classPath = nextTexts(&fields, "Classpath Count", "Classpath Entry");
  file.arguments = nextTexts(&fields, "Extra Args Count", "Extra Args Entry");
  readNewerFields(&fields, &file);
  if (fields.position != bytes.size()) {
    throw InputError(std::to_string(bytes.size() - fields.position) +
                     " bytes follow the last field of version " + std::to_string(file.version) +
                     "; the version or a count is wrong");
  }
  return file;
}

}  // namespace tools
