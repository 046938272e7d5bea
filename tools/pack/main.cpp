#include <cstdio>
#include <exception>
#include <string>

#include "tools/input_error.h"
#include "tools/pack/commands.h"

static const int kInputError = 1;
static const int kUsageError = 2;

// The folder of this program, where the product's executables lie beside it.
static std::string folderOf(const char* program) {
  const std::string path = program;
  const size_t slash = path.rfind('/');
  return slash == std::string::npos ? "." : path.substr(0, slash);
}

int main(int argc, char** argv) {
  CLI::App app{"Makes macOS bundles, installers and update sites of Java applications."};
  app.set_version_flag("--version", QUORVANE_VERSION);
  app.require_subcommand(1);
  tools::addArchiveCommand(&app);
  tools::addBuildCommand(&app, folderOf(argv[0]));
  tools::addKeyCommand(&app);
  tools::addLaunchfileCommand(&app);
  tools::addParamsCommand(&app);
  tools::addTailCommand(&app);
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
