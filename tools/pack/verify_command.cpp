#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tools/delivery/delivered_bundle.h"
#include "tools/pack/commands.h"
#include "tools/system/input_error.h"
#include "tools/system/progress.h"
#include "tools/system/temporary_folder.h"
#include "tools/verify/installer_check.h"

namespace tools {

namespace {
struct VerifyOptions {
  std::string bundle;
  std::string site;
  bool isQuiet = false;
};
}  // namespace

// Messages name the download instead of the temporary folder that it was unpacked into.
static void renameAll(std::vector<std::string>* lines, const std::string& from,
                      const std::string& to) {
  for (std::string& line : *lines) {
    for (size_t at = line.find(from); at != std::string::npos; at = line.find(from, at)) {
      line.replace(at, from.size(), to);
      at += to.size();
    }
  }
}

static BundleReport reportOf(const VerifyOptions& options, Progress* progress) {
  const auto step = [&](const std::string& what) { progress->step(what); };
  if (!std::filesystem::is_regular_file(options.bundle)) {
    return checkBundle(options.bundle, options.site, step);
  }
  const TemporaryFolder work;
  BundleReport report = checkBundle(unpackBundle(options.bundle, work.path()), options.site, step);
  renameAll(&report.facts, work.path() + "/", options.bundle + ":");
  renameAll(&report.problems, work.path() + "/", options.bundle + ":");
  return report;
}

static void verify(VerifyOptions options) {
  while (options.bundle.size() > 1 && options.bundle.back() == '/') {
    options.bundle.pop_back();
  }
  Progress progress(options.isQuiet ? Verbosity::quiet : Verbosity::normal, 0);
  const BundleReport report = reportOf(options, &progress);
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
              "Example:\n  quorvane-pack verify dist/Hello-1-macos-arm64.zip --site dist/site");
  auto options = std::make_shared<VerifyOptions>();
  command.text("BUNDLE", &options->bundle, "The download that 'build' made, or a bundle, NAME.app")
      .required();
  command.text("--site", &options->site,
               "The update site, whose files the installed application must accept");
  command.flag("-q,--quiet", &options->isQuiet, "Print nothing on success");
  command.runs([options] { verify(*options); });
}

}  // namespace tools
