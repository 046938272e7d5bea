#ifndef QUORVANE_TOOLS_PACK_COMMANDS_H
#define QUORVANE_TOOLS_PACK_COMMANDS_H

#include <CLI/CLI.hpp>
#include <string>

#include "tools/program_files.h"

// The sub-commands of quorvane-pack. Each function adds one to `app`, with its options, its help
// and the callback that runs it. A callback throws tools::InputError when its input is wrong.

namespace tools {

// archive create, list, verify, extract.
void addArchiveCommand(CLI::App* app);

// params write, params read: the properties that an installer is given at run time.
void addParamsCommand(CLI::App* app);

// build: bundles, installers and the update site of a project. `files` is what is packed when the
// command line names nothing else.
void addBuildCommand(CLI::App* app, const ProgramFiles& files);

// init: a project file for a jar or a folder, and a key.
void addInitCommand(CLI::App* app);

// key new, key show: the key pair that signs an application's archives.
void addKeyCommand(CLI::App* app);

// launchfile write, launchfile read: the launch file of an application's folder.
void addLaunchfileCommand(CLI::App* app);

// run: an installer in a throw-away home.
void addRunCommand(CLI::App* app);

// tail write, tail read: the Tail record of a bundle or behind an executable.
void addTailCommand(CLI::App* app);

// verify: a whole installer, looked at as the product would.
void addVerifyCommand(CLI::App* app);

}  // namespace tools

#endif
