#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tools/apple/seal.h"
#include "tools/formats/params_check.h"
#include "tools/formats/params_writer.h"
#include "tools/pack/commands.h"
#include "tools/pack/replaceable.h"
#include "tools/system/input_error.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

namespace {
struct ParamsOptions {
  std::string path;
  std::vector<std::string> pairs;
  std::string name;
  std::vector<std::string> unset;
  bool isNew = false;
  bool mayReplace = false;
};
}  // namespace

static const unsigned kParamsMode = 0644;

// The params file of the bundle `path`, or the file `path`.
static std::string paramsPath(const std::string& path) {
  return fs::is_directory(path) ? path + "/Contents/Resources/AppParams.excludefromsigning" : path;
}

static Properties readProperties(const std::string& path) {
  const std::string bytes = readWhole(path);
  return aboutFile(path, [&] { return decodeParams(bytes); });
}

// The properties in the file. A file that is not a params file must not be replaced.
static Properties standingProperties(const ParamsOptions& options, const std::string& path) {
  Properties properties;
  if (!options.mayReplace) {
    requireReplaceable(path, "valid params file",
                       [&] { properties = decodeParams(readWhole(path)); });
  }
  return options.isNew ? Properties{} : properties;
}

static Properties propertiesOf(const std::vector<std::string>& pairs) {
  Properties properties;
  for (const std::string& pair : pairs) {
    const size_t split = pair.find('=');
    if (split == std::string::npos || split == 0) {
      failUsage(pair + " is not a property; expected NAME=VALUE");
    }
    setProperty(&properties, pair.substr(0, split), pair.substr(split + 1));
  }
  return properties;
}

// Says that the file `path` belongs to a signed bundle, whose seal no longer fits it. The other
// place of a params file, in an .lproj folder, is never sealed.
static void warnOfBrokenSeal(const std::string& path) {
  const fs::path resources = fs::absolute(path).lexically_normal().parent_path();
  const std::string bundle = resources.parent_path().parent_path();
  if (resources.filename() == "Resources" && resources.parent_path().filename() == "Contents" &&
      hasSeal(bundle)) {
    fprintf(stderr,
            "quorvane-pack: %s is signed, and this change breaks its seal: sign it again, and have "
            "it notarised again, with 'quorvane-pack sign'\n",
            bundle.c_str());
  }
}

static void writeParams(const ParamsOptions& options) {
  const Properties given = propertiesOf(options.pairs);
  const std::string path = paramsPath(options.path);
  Properties properties = standingProperties(options, path);
  for (const std::string& name : options.unset) {
    unsetProperty(&properties, name);
  }
  for (const auto& [name, value] : given) {
    setProperty(&properties, name, value);
  }
  const std::string bytes = encodeParams(properties);
  requireRoomForProperties(properties, Tail{});
  writeWhole(path, bytes, kParamsMode);
  warnOfBrokenSeal(path);
}

static void readParams(const ParamsOptions& options) {
  bool isFound = options.name.empty();
  for (const auto& [name, value] : readProperties(paramsPath(options.path))) {
    if (options.name.empty()) {
      printf("%s=%s\n", name.c_str(), value.c_str());
    } else if (name == options.name) {
      printf("%s\n", value.c_str());
      isFound = true;
    }
  }
  if (!isFound) {
    throw InputError(options.path + " has no property " + options.name);
  }
}

static void addParamsWrite(const Command& params) {
  const Command command =
      params.add("write", "Writes a params file, or changes one.",
                 "Existing properties are kept unless given or unset.\n"
                 "No archive's signature covers the file. A bundle's signature seals it like any\n"
                 "resource: sign the bundle again afterwards.\n"
                 "Example:\n  quorvane-pack params write Setup.app show_no_ui=true");
  auto options = std::make_shared<ParamsOptions>();
  command.text("PATH", &options->path, "An installer bundle or a params file").required();
  command.texts("NAME=VALUE", &options->pairs, "The properties to set");
  command.texts("--unset", &options->unset, "Remove this property").typeName("NAME").oneByOne();
  command.flag("--replace", &options->isNew, "Drop the existing properties");
  command.flag("--force", &options->mayReplace, "Replace the file even if it is not a params file");
  command.runs([options] { writeParams(*options); });
}

static void addParamsRead(const Command& params) {
  const Command command = params.add("read", "Prints a params file.",
                                     "Example:\n  quorvane-pack params read Setup.app");
  auto options = std::make_shared<ParamsOptions>();
  command.text("PATH", &options->path, "An installer bundle or a file").required();
  command.text("--value", &options->name, "Print only this property's value");
  command.runs([options] { readParams(*options); });
}

void addParamsCommand(const Command& app) {
  const Command params =
      app.addGroup("params", "Writes and shows the properties that an installer reads at run time.",
                   "Example:\n  quorvane-pack params read AppParams.excludefromsigning");
  addParamsWrite(params);
  addParamsRead(params);
}

}  // namespace tools
