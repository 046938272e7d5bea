#include <cstdio>
#include <exception>
#include <string>

#include "tools/input_error.h"
#include "tools/pack/commands.h"

static const int kInputError = 1;
static const int kUsageError = 2;

int main(int argc, char** argv) {
  CLI::App app{"Makes macOS bundles, installers and update sites of Java applications."};
  app.set_version_flag("--version", "quorvane-pack " QUORVANE_VERSION);
  app.require_subcommand(1);
  app.footer(
      "Example:\n  quorvane-pack init hello.jar && quorvane-pack build && quorvane-pack run");
  tools::addArchiveCommand(&app);
  tools::addBuildCommand(&app, tools::findProgramFiles(argv[0]));
  tools::addInitCommand(&app);
  tools::addKeyCommand(&app);
  tools::addLaunchfileCommand(&app);
  tools::addParamsCommand(&app);
  tools::addRunCommand(&app);
  tools::addTailCommand(&app);
  tools::addVerifyCommand(&app);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kUsageError;
  } catch (const std::exception& error) {
    fprintf(stderr, "quorvane-pack: %s\n", error.what());
    return kInputError;
  }
  return 0;
}
