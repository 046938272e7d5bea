#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "tools/input_error.h"
#include "tools/pack/commands.h"
#include "tools/params_writer.h"
#include "tools/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

namespace {
struct ParamsOptions {
  std::string path;
  std::vector<std::string> pairs;
  std::string name;
};
}  // namespace

static const unsigned kParamsMode = 0644;

// The params file of the bundle `path`, or the file `path`.
static std::string paramsPath(const std::string& path) {
  return fs::is_directory(path) ? path + "/Contents/Resources/AppParams.excludefromsigning" : path;
}

static Properties propertiesOf(const std::vector<std::string>& pairs) {
  Properties properties;
  for (const std::string& pair : pairs) {
    const size_t split = pair.find('=');
    if (split == std::string::npos) {
      throw InputError(pair + " is no property; expected NAME=VALUE");
    }
    properties.emplace_back(pair.substr(0, split), pair.substr(split + 1));
  }
  return properties;
}

static void writeParams(const ParamsOptions& options) {
  const std::string bytes = encodeParams(propertiesOf(options.pairs));
  WholeFile file(paramsPath(options.path), kParamsMode);
  file.write(bytes.data(), bytes.size());
  file.finish();
}

static Properties readProperties(const std::string& path) {
  openInput(path);
  std::ifstream in(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(in), {}};
  try {
    return decodeParams(bytes);
  } catch (const InputError& error) {
    throw InputError(path + ": " + error.what());
  }
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

static void addWrite(const Command& params) {
  const Command command =
      params.add("write", "Writes a params file.",
                 "The file may be changed without signing the bundle again.\n"
                 "Example:\n  quorvane-pack params write Setup.app show_no_ui=true");
  auto options = std::make_shared<ParamsOptions>();
  command
      .text("PATH", &options->path, "An installer bundle, whose params file is replaced, or a file")
      .required();
  command.texts("NAME=VALUE", &options->pairs, "The properties; none makes an empty file");
  command.runs([options] { writeParams(*options); });
}

static void addRead(const Command& params) {
  const Command command = params.add("read", "Prints a params file.",
                                     "Example:\n  quorvane-pack params read Setup.app");
  auto options = std::make_shared<ParamsOptions>();
  command.text("PATH", &options->path, "An installer bundle or a file").required();
  command.text("--value", &options->name, "Print nothing but this property's value");
  command.runs([options] { readParams(*options); });
}

void addParamsCommand(const Command& app) {
  const Command params = app.addGroup(
      "params", "Writes and shows the properties that an installer is given at run time.",
      "Example:\n  quorvane-pack params read AppParams.excludefromsigning");
  addWrite(params);
  addRead(params);
}

}  // namespace tools
