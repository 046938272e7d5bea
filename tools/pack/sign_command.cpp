#include <cstdio>
#include <memory>
#include <string>

#include "tools/apple/target_signing.h"
#include "tools/bundle/bundle_reader.h"
#include "tools/pack/commands.h"
#include "tools/project/project_file.h"
#include "tools/system/input_error.h"

namespace tools {

namespace {
struct SignOptions {
  std::string bundle;
  std::string project = "quorvane.toml";
};
}  // namespace

static void signBundle(SignOptions options) {
  while (options.bundle.size() > 1 && options.bundle.back() == '/') {
    options.bundle.pop_back();
  }
  const Project project = readProject(options.project);
  const std::string fault = faultOf(project.apple);
  if (!fault.empty()) {
    throw InputError(options.project + ": [signing.apple] " + fault);
  }
  const std::string executable = executableOfBundle(options.bundle);
  TargetSigning signing(project.apple, executable);
  if (!signing.isPossible()) {
    throw InputError(signing.notes().empty() ? executable + " is not a macOS executable"
                                             : options.bundle + ": " + signing.notes()[0]);
  }
  signing.finish(options.bundle);
  for (const std::string& note : signing.notes()) {
    printf("note: %s\n", note.c_str());
  }
}

void addSignCommand(const Command& app) {
  const Command command = app.add(
      "sign", "Signs a finished macOS bundle, as [signing.apple] of a project says.",
      "'build' does this already; it is needed again after a change of the bundle. The code in an\n"
      "installer's archives keeps its signatures.\n"
      "Example:\n  quorvane-pack sign dist/bundles/macos-arm64/offline/Hello.app");
  auto options = std::make_shared<SignOptions>();
  command.text("BUNDLE", &options->bundle, "The bundle, NAME.app").required();
  command.text("PROJECT", &options->project, "The project file").withDefault();
  command.runs([options] { signBundle(*options); });
}

}  // namespace tools
