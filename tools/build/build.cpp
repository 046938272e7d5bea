#include "tools/build/build.h"

#include <algorithm>
#include <list>
#include <optional>

#include "tools/apple/target_signing.h"
#include "tools/build/target_build.h"
#include "tools/keys/key_file.h"
#include "tools/project/components.h"
#include "tools/project/project_fit.h"
#include "tools/system/interruption.h"
#include "tools/system/temporary_folder.h"
#include "tools/system/whole_file.h"

namespace tools {

static std::optional<SigningKey> keyOf(const Project& project) {
  if (project.key.empty()) {
    return std::nullopt;
  }
  warnOfOpenKey(project.key);
  return SigningKey::read(project.key);
}

static void warnOfOpenSecrets(const AppleSigning& apple) {
  for (const std::string* secret :
       {&apple.certificate, &apple.key, &apple.passwordFile, &apple.notaryKey}) {
    if (!secret->empty() && (secret != &apple.certificate || apple.key.empty())) {
      warnOfOpenKey(*secret);
    }
  }
}

static std::list<TargetSigning> signingsOf(const std::vector<TargetBuild>& builds) {
  std::list<TargetSigning> signings;
  for (const TargetBuild& build : builds) {
    signings.emplace_back(build.project.apple, build.executables + "/extractor");
  }
  return signings;
}

// Targets mostly have the same notes.
static void addNotes(const TargetSigning& signing, std::vector<std::string>* remarks) {
  for (const std::string& note : signing.notes()) {
    const std::string remark = "note: " + note;
    if (std::find(remarks->begin(), remarks->end(), remark) == remarks->end()) {
      remarks->push_back(remark);
    }
  }
}

// How many steps the progress shows.
static int stepsOf(const BuildOptions& options, const std::list<TargetSigning>& signings) {
  constexpr int kForAll = 1;
  const int forEach = options.makesLauncher ? 8 : 7;
  const auto isSigned = [](const TargetSigning& signing) { return signing.isPossible(); };
  return kForAll + forEach * static_cast<int>(signings.size()) +
         static_cast<int>(std::count_if(signings.begin(), signings.end(), isSigned));
}

static void sayNotes(const Project& project, const SigningKey* key, Progress* progress) {
  if (project.updateUrl == NO_UPDATE_URL) {
    const bool isAsked = !project.updaterFolder.empty() || !project.updates.url.empty() ||
                         project.updates.check == "never";
    progress->result(
        std::string("note: [installer] has no update_url, so the online installer cannot download "
                    "a runtime") +
        (isAsked ? "" : ", and installed applications do not look for updates"));
  }
  if (key == nullptr) {
    progress->result(
        "note: [signing] has no key, and installed applications refuse unsigned updates");
  }
}

static void sayResults(const BuildOptions& options, const OutputFolder& output,
                       const std::vector<IndexEntry>& entries, Progress* progress) {
  const auto say = [&](std::string what, const std::string& name) {
    constexpr size_t kWidth = 19;
    what.resize(kWidth, ' ');
    progress->result(what + output.finalPath(name));
  };
  for (const IndexEntry& entry : entries) {
    say(entry.kind + (entry.kind == LAUNCHER_BUNDLE.name ? " bundle" : " installer"), entry.name);
  }
  if (options.keepsBundles) {
    say("bundles", "bundles");
  }
  say("update site", "site");
  say("index", INDEX_NAME);
}

namespace {

// What the checks of a target find.
struct CheckedTarget {
  CheckedTarget(const Project& project, const std::string& updaterJar)
      : components(project, updaterJar) {}

  Components components;
  TargetFit fit;  // what its programs and libraries are for
};

}  // namespace

// Throws InputError if something of a target cannot be packed.
static std::list<CheckedTarget> checkTargets(const BuildOptions& options,
                                             const std::vector<TargetBuild>& builds,
                                             const SigningKey* key) {
  std::list<CheckedTarget> targets;
  for (const TargetBuild& build : builds) {
    requireApart(options, build.project);
    CheckedTarget& target = targets.emplace_back(build.project, options.files.updaterJar);
    target.fit = fitOfProject(build.project, build.executables,
                              build.isNamed ? std::optional(build.target) : std::nullopt);
    requireEncodable(build, key);
  }
  return targets;
}

void runBuild(const BuildOptions& options) {
  noteInterruptions();
  removeAbandonedFolders();
  // Errors are found before a runtime is made, which takes time.
  const Project project = projectOf(options);
  const std::vector<TargetBuild> builds = targetsOf(project, options);
  std::list<TargetSigning> signings = signingsOf(builds);
  Progress progress(options.verbosity(), stepsOf(options, signings));
  progress.step("reading " + options.project);
  const std::optional<SigningKey> key = keyOf(project);
  const SigningKey* signer = key ? &*key : nullptr;
  warnOfOpenSecrets(project.apple);
  std::list<CheckedTarget> targets = checkTargets(options, builds, signer);
  // The same for all targets.
  std::vector<std::string> remarks = targets.back().components.remarks();
  const Appearance appearance = appearanceOf(project);
  OutputFolder output(options.output);
  std::string prefix;
  const auto step = [&](const std::string& what) { progress.step(prefix + what); };
  BuildCache cache(options.avoidsCache ? "" : userCacheFolder());
  RuntimeMaker maker({step, [&](const std::string& what) { progress.detail(what); }}, &cache);
  std::vector<IndexEntry> entries;
  for (const TargetBuild& build : builds) {
    CheckedTarget& target = targets.front();
    prefix = builds.size() > 1 ? targetText(build.target) + ": " : "";
    const TemporaryFolder work;
    const Runtime runtime = maker.runtimeOf(build.project);
    requireRuntime(&target.fit, runtime.home, runtime.shown);
    progress.detail("everything is for " + target.fit.text());
    const std::vector<IndexEntry> made =
        makeTarget(build, runtime,
                   {options, signer, appearance, target.components, target.fit.minimumSystem(),
                    output, work.path(), &cache, &signings.front(), step});
    addNotes(signings.front(), &remarks);
    signings.pop_front();  // with its copies of signed code
    targets.pop_front();
    entries.insert(entries.end(), made.begin(), made.end());
  }
  writeWhole(output / INDEX_NAME, encodeIndex(project.name, entries));
  output.finish();
  sayResults(options, output, entries, &progress);
  for (const std::string& remark : remarks) {
    progress.result(remark);
  }
  sayNotes(project, signer, &progress);
  progress.finish();
}

}  // namespace tools
