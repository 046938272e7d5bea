#include <memory>
#include <string>

#include "tools/build/build.h"
#include "tools/pack/commands.h"

namespace tools {

static void addOverrides(const Command& command, BuildOptions* options) {
  command
      .texts("--target", &options->targets,
             "Overrides the project's [application] targets; may be given several times")
      .oneByOne();
  command.text("--app-version", &options->appVersion,
               "Overrides the project's [application] version");
  command.text("--update-url", &options->updateUrl,
               "Overrides the project's [installer] update_url");
  command.text("--key", &options->key,
               "Overrides the project's [signing] key; - is standard input");
  command.text("--runtime", &options->runtime, "Pack the runtime in this folder instead");
  command.text("--jdk", &options->jdk, "The JDK that makes the runtime");
}

static void requireJobs(int jobs) {
  constexpr int kMost = 256;
  if (jobs < 0 || jobs > kMost) {
    failUsage("--jobs " + std::to_string(jobs) + " is not a number from 0 to " +
              std::to_string(kMost));
  }
}

void addBuildCommand(const Command& app, const ProgramFiles& files) {
  const Command command = app.add(
      "build",
      "Makes downloads for each target, an offline and an online installer, and an update site.",
      "Options override the project file. Results appear only when all are complete.\n"
      "Example:\n  quorvane-pack build quorvane.toml --output dist --app-version 2");
  auto options = std::make_shared<BuildOptions>();
  options->files = files;
  command.text("PROJECT", &options->project, "The project file").withDefault();
  command
      .text("-o,--output", &options->output,
            "The folder to write to: new, empty, or made by this command")
      .withDefault();
  command.text("--executables", &options->executables,
               "The folder of launcher, extractor and lzma64 for the one target that is made");
  command.flag("--bundles", &options->keepsBundles, "Keep the bundles as folders, too");
  command.flag("--launcher-bundle", &options->makesLauncher,
               "Make a bundle with just the launcher, too");
  command.flag("--no-cache", &options->avoidsCache,
               "Make everything anew, and keep nothing for the next build");
  command.number(
      "--jobs", &options->jobs,
      "How many compressions run side by side; 0, the default, for what suits this machine");
  addOverrides(command, options.get());
  const Option quiet = command.flag("-q,--quiet", &options->isQuiet, "Print nothing on success");
  command.flag("-v,--verbose", &options->isVerbose, "Print every step in a line, with details")
      .excludes(quiet);
  command.runs([options] {
    requireJobs(options->jobs);
    runBuild(*options);
  });
}

}  // namespace tools
