#include <climits>

#include "tools/formats/launch_file_writer.h"
#include "tools/formats/strict_fields.h"
#include "tools/system/input_error.h"

namespace tools {

// Fields that the product would not read completely are for the caller to report.
static std::string nextText(StrictFields* fields, const char* name) {
  return fields->text(name, INT_MAX);
}

static std::vector<std::string> nextTexts(StrictFields* fields, const char* countName,
                                          const char* name) {
  const long count = fields->number(countName);
  std::vector<std::string> texts;
  for (long i = 0; i < count; ++i) {
    texts.push_back(nextText(fields, name));
  }
  return texts;
}

static void readNewerFields(StrictFields* fields, LaunchFile* file) {
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
    file->mustFork = fields->signedNumber("Must Fork") == 1;
  }
}

LaunchFile decodeLaunchFile(const std::string& bytes) {
  StrictFields fields(bytes, "the launch file", "it is truncated or not a launch file");
  LaunchFile file;
  file.version = fields.signedNumber("LaunchFile VER");
  file.mainClass = nextText(&fields, "Class");
  file.updateClass = nextText(&fields, "Class OnUpdate");
  file.appName = nextText(&fields, "App Name");
  file.icon = nextText(&fields, "OS ICNS");
  file.urlRequired = fields.signedNumber("URL Required") == 1;
  file.maximumHeapMegabytes = fields.signedNumber("jvmMem (old)");
  file.initialHeapMegabytes = fields.signedNumber("jvmStack (old)");
  file.classPath = nextTexts(&fields, "Classpath Count", "Classpath Entry");
  file.arguments = nextTexts(&fields, "Extra Args Count", "Extra Args Entry");
  readNewerFields(&fields, &file);
  if (!fields.isAtEnd()) {
    throw InputError(std::to_string(static_cast<long long>(bytes.size()) - fields.position()) +
                     " bytes follow the last field of version " + std::to_string(file.version) +
                     "; the version or a count is wrong");
  }
  return file;
}

}  // namespace tools
