#include <cstdio>
#include <memory>
#include <string>

#include "tools/formats/launch_file_text.h"
#include "tools/formats/launch_file_writer.h"
#include "tools/pack/commands.h"
#include "tools/pack/replaceable.h"
#include "tools/system/input_error.h"
#include "tools/system/whole_file.h"

namespace tools {

namespace {
struct LaunchFileOptions {
  std::string input;
  std::string output;
  bool mayReplace = false;
};
}  // namespace

static void writeLaunchFile(const LaunchFileOptions& options) {
  const std::string text = readWhole(options.input);
  const std::string bytes =
      aboutFile(options.input, [&] { return encodeLaunchFile(launchFileFromText(text)); });
  if (!options.mayReplace) {
    requireReplaceable(options.output, "launch file",
                       [&] { decodeLaunchFile(readWhole(options.output)); });
  }
  writeWhole(options.output, bytes);
}

static void readLaunchFile(const LaunchFileOptions& options) {
  const std::string bytes = readWhole(options.input);
  const std::string text =
      aboutFile(options.input, [&] { return textOfLaunchFile(decodeLaunchFile(bytes)); });
  fwrite(text.data(), 1, text.size(), stdout);
}

static void addLaunchFileWrite(const Command& launchFile) {
  const Command command = launchFile.add(
      "write", "Writes a launch file from TOML text.",
      "The launch file belongs in the application's folder under the name QuorvaneLaunch.\n"
      "Example:\n  quorvane-pack launchfile write launch.toml app/QuorvaneLaunch");
  auto options = std::make_shared<LaunchFileOptions>();
  command.text("TEXT", &options->input, "The TOML text; \"read\" shows its keys").required();
  command.text("FILE", &options->output, "Where the launch file goes").required();
  command.flag("--force", &options->mayReplace, "Replace any existing file");
  command.runs([options] { writeLaunchFile(*options); });
}

static void addLaunchFileRead(const Command& launchFile) {
  const Command command =
      launchFile.add("read", "Prints a launch file as TOML text.",
                     "Example:\n  quorvane-pack launchfile read app/QuorvaneLaunch");
  auto options = std::make_shared<LaunchFileOptions>();
  command.text("FILE", &options->input, "The launch file").required();
  command.runs([options] { readLaunchFile(*options); });
}

void addLaunchfileCommand(const Command& app) {
  const Command launchFile = app.addGroup(
      "launchfile", "Writes and shows the file that says how an application is started.",
      "Example:\n  quorvane-pack launchfile read app/QuorvaneLaunch");
  addLaunchFileWrite(launchFile);
  addLaunchFileRead(launchFile);
}

}  // namespace tools
