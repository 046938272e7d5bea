#include <cstdio>
#include <memory>
#include <string>

#include "tools/pack/commands.h"
#include "tools/pack/progress.h"
#include "tools/system/input_error.h"
#include "tools/verify/installer_check.h"

namespace tools {

namespace {
struct VerifyOptions {
  std::string bundle;
  std::string site;
  bool isQuiet = false;
};
}  // namespace

static void verify(VerifyOptions options) {
  while (options.bundle.size() > 1 && options.bundle.back() == '/') {
    options.bundle.pop_back();
  }
  Progress progress(options.isQuiet ? Verbosity::quiet : Verbosity::normal, 0);
  const BundleReport report = checkBundle(options.bundle, options.site,
                                          [&](const std::string& step) { progress.step(step); });
  progress.finish();
  if (!options.isQuiet) {
    for (const std::string& fact : report.facts) {
      printf("%s\n", fact.c_str());
    }
  }
  if (!report.problems.empty()) {
    std::string text = options.bundle + " would not work:";
    for (const std::string& problem : report.problems) {
      text += "\n  " + problem;
    }
    throw InputError(text);
  }
  if (!options.isQuiet) {
    printf("%s: all is well\n", options.bundle.c_str());
  }
}

void addVerifyCommand(const Command& app) {
  const Command command =
      app.add("verify", "Checks a whole installer, or a launcher bundle.",
              "Example:\n  quorvane-pack verify \"dist/Hello Installer.app\" --site dist/site");
  auto options = std::make_shared<VerifyOptions>();
  command.text("BUNDLE", &options->bundle, "The bundle, NAME.app").required();
  command.text("--site", &options->site,
               "The update site, whose files the installed application must accept");
  command.flag("-q,--quiet", &options->isQuiet, "Print nothing on success");
  command.runs([options] { verify(*options); });
}

}  // namespace tools
