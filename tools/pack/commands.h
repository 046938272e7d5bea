#ifndef QUORVANE_TOOLS_PACK_COMMANDS_H
#define QUORVANE_TOOLS_PACK_COMMANDS_H

#include "tools/build/program_files.h"
#include "tools/pack/command_line.h"

// The sub-commands of quorvane-pack. Each function adds one to `app`, with its options, its help
// and the function that runs it, which throws tools::InputError if its input is wrong.

namespace tools {

// archive create, list, verify, extract.
void addArchiveCommand(const Command& app);

// params write, params read: the properties that an installer reads at run time.
void addParamsCommand(const Command& app);

// build: bundles, installers and the update site of a project. `files` is the default for what the
// command line does not name.
void addBuildCommand(const Command& app, const ProgramFiles& files);

// init: a project file for a jar or a folder, and a key.
void addInitCommand(const Command& app);

// key new, key show: the key pair that signs an application's archives.
void addKeyCommand(const Command& app);

// launchfile write, launchfile read: the launch file of an application's folder.
void addLaunchfileCommand(const Command& app);

// run: an installer in a temporary home.
void addRunCommand(const Command& app);

// sign: a finished macOS bundle, as the project says.
void addSignCommand(const Command& app);

// tail write, tail read: the Tail record of a bundle or appended to an executable.
void addTailCommand(const Command& app);

// verify: a whole installer, checked as the product would.
void addVerifyCommand(const Command& app);

}  // namespace tools

#endif
