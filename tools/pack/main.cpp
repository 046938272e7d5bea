#include "tools/pack/commands.h"

static const tools::ProgramTexts kTexts = {
    "Makes macOS bundles, installers and update sites of Java applications.",
    "quorvane-pack " QUORVANE_VERSION,
    "Example:\n  quorvane-pack init hello.jar && quorvane-pack build && quorvane-pack run"};

int main(int argc, char** argv) {
  return tools::runCommandLine(argc, argv, kTexts, [&](const tools::Command& app) {
    tools::addArchiveCommand(app);
    tools::addBuildCommand(app, tools::findProgramFiles(argv[0]));
    tools::addInitCommand(app);
    tools::addKeyCommand(app);
    tools::addLaunchfileCommand(app);
    tools::addParamsCommand(app);
    tools::addRunCommand(app);
    tools::addSignCommand(app);
    tools::addTailCommand(app);
    tools::addVerifyCommand(app);
  });
}
