#include "tools/build/build.h"

#include <algorithm>
#include <list>
#include <optional>

#include "tools/apple/target_signing.h"
#include "tools/build/target_build.h"
#include "tools/delivery/neutral_surroundings.h"
#include "tools/formats/lzma.h"
#include "tools/keys/key_file.h"
#include "tools/project/components.h"
#include "tools/project/project_fit.h"
#include "tools/system/interruption.h"
#include "tools/system/temporary_folder.h"
#include "tools/system/whole_file.h"
#include "tools/system/workers.h"

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

// How many compressions run side by side.
static unsigned jobsOf(const BuildOptions& options) {
  return options.jobs > 0 ? static_cast<unsigned>(options.jobs)
                          : jobsForThisMachine(lzmaCompressionMemory());
}

namespace {

// What a build is made with, once all of it has been checked.
struct CheckedBuild {
  const BuildOptions& options;
  const SigningKey* key;
  const Appearance& appearance;
  const std::vector<TargetBuild>& builds;
  std::list<TargetSigning> signings;  // of the targets, in their order, like the next
  std::list<CheckedTarget> targets;
  OutputFolder& output;
  Progress* progress;
  std::vector<std::string> remarks;
};

}  // namespace

// Makes all targets. While the workers pack what is there, the main thread goes on with what needs
// the user's programs, and waits for their results in the targets' order.
static std::vector<IndexEntry> makeTargets(CheckedBuild* build) {
  std::string prefix;
  const auto step = [&](const std::string& what) { build->progress->step(prefix + what); };
  const auto detail = [&](const std::string& what) { build->progress->detail(what); };
  const auto enter = [&](const TargetBuild& target) {
    prefix = build->builds.size() > 1 ? targetText(target.target) + ": " : "";
  };
  BuildCache cache(build->options.avoidsCache ? "" : userCacheFolder());
  RuntimeMaker runtimes({step, detail}, &cache);
  std::list<TargetMaker> makers;
  // Ends first: its jobs use all of the above.
  Workers workers(jobsOf(build->options));
  Packing packing(&workers, &cache, build->key);
  auto target = build->targets.begin();
  auto signing = build->signings.begin();
  for (const TargetBuild& each : build->builds) {
    makers.emplace_back(each, (target++)->components, &*signing++,
                        BuildSurroundings{build->options, build->key, build->appearance,
                                          build->output, &packing, &workers, step});
    makers.back().startComponents();
  }
  target = build->targets.begin();
  auto maker = makers.begin();
  for (const TargetBuild& each : build->builds) {
    enter(each);
    const Runtime runtime = runtimes.runtimeOf(each.project);
    requireRuntime(&target->fit, runtime.home, runtime.shown);
    detail("everything is for " + target->fit.text());
    (maker++)->startRuntime(runtime, (target++)->fit.minimumSystem());
  }
  std::vector<IndexEntry> entries;
  for (const TargetBuild& each : build->builds) {
    enter(each);
    const std::vector<IndexEntry> made = makers.front().finish();
    entries.insert(entries.end(), made.begin(), made.end());
    addNotes(build->signings.front(), &build->remarks);
    makers.pop_front();
    build->signings.pop_front();  // with its copies of signed code
    build->targets.pop_front();
  }
  return entries;
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
  // The workers' downloads have times, and no thread may change the zone beside others.
  const NeutralSurroundings surroundings;
  CheckedBuild build = {
      options, signer,    appearance,        builds, std::move(signings), std::move(targets),
      output,  &progress, std::move(remarks)};
  const std::vector<IndexEntry> entries = makeTargets(&build);
  writeWhole(output / INDEX_NAME, encodeIndex(project.name, entries));
  output.finish();
  sayResults(options, output, entries, &progress);
  for (const std::string& remark : build.remarks) {
    progress.result(remark);
  }
  sayNotes(project, signer, &progress);
  progress.finish();
}

}  // namespace tools
