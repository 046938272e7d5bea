#include "launcher/jvm/startable_runtime.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/support/files.h"
#include "tests/support/java_runtime.h"
#include "tests/support/master_folder.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

namespace fs = std::filesystem;

namespace {

const std::string kNoFlaw = "none";
const std::string kNoLibrary = "its JVM library is missing or empty";
const std::string kNoModules = "its modules file is missing or empty";

class RuntimeLook : public testing::Test {
 protected:
  void add(const std::string& file, const std::string& bytes = "content", unsigned mode = 0644) {
    test::writeFile(runtime_ / file, bytes, mode);
  }

  // A runtime as it is built today, in `home` of the folder.
  void addRuntime(const std::string& home = "") { test::makeRuntimeOfText(runtime_ / home); }

  void remove(const std::string& file) { fs::remove_all(runtime_ / file); }

  std::string flaw() { return shown(flawOfRuntime(runtime_.path().c_str())); }
  std::string flawInProcess() { return shown(flawOfRuntimeInProcess(runtime_.path().c_str())); }

  test::TempFolder runtime_;

 private:
  static std::string shown(const char* text) { return text == nullptr ? kNoFlaw : text; }
};

}  // namespace

TEST_F(RuntimeLook, WholeRuntimeHasNoFlawAtAnyPlace) {
  for (const char* home : {"", "Contents/Home/", "Contents/Home/jre/"}) {
    remove("");
    addRuntime(home);
    EXPECT_EQ(kNoFlaw, flawInProcess()) << home;
    EXPECT_EQ(kNoFlaw, flaw()) << home;
  }
}

TEST_F(RuntimeLook, FolderWithoutAnythingLacksItsLibrary) {
  EXPECT_EQ(kNoLibrary, flawInProcess());
  EXPECT_EQ(kNoLibrary, flaw());
}

TEST_F(RuntimeLook, PlainFileIsNoFolder) {
  add("file");
  EXPECT_STREQ("it is no folder", flawOfRuntime((runtime_ / "file").c_str()));
}

TEST_F(RuntimeLook, LibraryThatIsMissingEmptyOrAFolderIsAFlaw) {
  addRuntime();
  remove("lib/server/libjvm.dylib");
  EXPECT_EQ(kNoLibrary, flaw());
  add("lib/server/libjvm.dylib", "");
  EXPECT_EQ(kNoLibrary, flaw());
  remove("lib/server/libjvm.dylib");
  fs::create_directories(runtime_ / "lib/server/libjvm.dylib");
  EXPECT_EQ(kNoLibrary, flaw());
}

TEST_F(RuntimeLook, LinkThatLeadsNowhereIsNoLibrary) {
  addRuntime();
  remove("lib/server/libjvm.dylib");
  fs::create_symlink("nowhere", runtime_ / "lib/server/libjvm.dylib");
  EXPECT_EQ(kNoLibrary, flaw());
}

TEST_F(RuntimeLook, LinkToALibraryIsOne) {
  addRuntime();
  fs::rename(runtime_ / "lib/server/libjvm.dylib", runtime_ / "library");
  fs::create_symlink("../../library", runtime_ / "lib/server/libjvm.dylib");
  EXPECT_EQ(kNoFlaw, flaw());
}

TEST_F(RuntimeLook, ModulesThatAreMissingEmptyOrAFolderAreAFlaw) {
  addRuntime();
  remove("lib/modules");
  EXPECT_EQ(kNoModules, flaw());
  add("lib/modules", "");
  EXPECT_EQ(kNoModules, flaw());
  remove("lib/modules");
  fs::create_directories(runtime_ / "lib/modules");
  EXPECT_EQ(kNoModules, flaw());
  EXPECT_EQ(kNoModules, flawInProcess());
}

TEST_F(RuntimeLook, RuntimeThatHasItsModulesInAFolderHasNoFlaw) {
  addRuntime();
  remove("lib/modules");
  add("modules/java.base/module-info.class");
  EXPECT_EQ(kNoFlaw, flaw());
}

TEST_F(RuntimeLook, RuntimeWithJarsInPlaceOfModulesHasNoFlaw) {
  add("lib/server/libjvm.dylib");
  add("lib/rt.jar");
  EXPECT_EQ(kNoFlaw, flaw());
}

TEST_F(RuntimeLook, LibraryWhereOnlyJavaLooksIsOneForAChildOnly) {
  for (const char* place : {"lib/client/", "lib/amd64/server/", "jre/lib/server/"}) {
    remove("");
    addRuntime();
    remove("lib/server");
    add(std::string(place) + "libjvm.dylib");
    EXPECT_EQ(kNoLibrary, flawInProcess()) << place;
    EXPECT_EQ(kNoFlaw, flaw()) << place;
  }
}

TEST_F(RuntimeLook, LibraryWhereOnlyJavaLooksIsOfNoUseWithoutJavaOrModules) {
  addRuntime();
  fs::rename(runtime_ / "lib/server", runtime_ / "lib/client");
  fs::permissions(runtime_ / "bin/java", fs::perms(0644));
  EXPECT_EQ(kNoLibrary, flaw());
  fs::permissions(runtime_ / "bin/java", fs::perms(0755));
  EXPECT_EQ(kNoFlaw, flaw());
  remove("lib/modules");
  EXPECT_EQ(kNoLibrary, flaw());
}

TEST_F(RuntimeLook, JavaOfAnotherKindNeedsNoLibrary) {
  add("bin/java", "#!/bin/sh\n", 0755);
  EXPECT_EQ(kNoLibrary, flawInProcess());
  EXPECT_EQ(kNoFlaw, flaw());
}

TEST_F(RuntimeLook, JavaOfARuntimeThatLostItsLibrariesIsNotOfAnotherKind) {
  addRuntime();
  remove("lib");
  EXPECT_EQ(kNoLibrary, flaw());
}

TEST_F(RuntimeLook, RealRuntimeHasNoFlawUntilItLosesItsModules) {
  const std::string runtime = runtime_ / "real";
  test::makeRuntime(runtime);
  EXPECT_EQ(nullptr, flawOfRuntimeInProcess(runtime.c_str()));
  EXPECT_EQ(nullptr, flawOfRuntime(runtime.c_str()));
  const std::string forProcesses = runtime_ / "for-processes";
  test::makeRuntimeForProcessesOnly(forProcesses);
  EXPECT_EQ(kNoLibrary, flawOfRuntimeInProcess(forProcesses.c_str()));
  EXPECT_EQ(nullptr, flawOfRuntime(forProcesses.c_str()));
  fs::remove(forProcesses + "/lib/modules");
  EXPECT_EQ(kNoLibrary, flawOfRuntime(forProcesses.c_str()));
  EXPECT_NE(0, test::run({{forProcesses + "/bin/java", "-version"}}).status);
}

namespace {

// A runtime's version folder in a master folder, where the updater leaves its markers.
class RuntimeThatFailed : public testing::Test {
 protected:
  RuntimeThatFailed() { master_.addWhole("Quorvane-My JRE-1500-complete"); }

  std::string runtime() const { return master_.component("My JRE", "1500"); }

  test::TempFolder folder_;
  const test::MasterFolder master_{folder_.path()};
};

}  // namespace

TEST_F(RuntimeThatFailed, IsPassedOverAndIsNotDamaged) {
  master_.markAsFailed("My JRE", "1500");
  EXPECT_STREQ("the application failed to start with it twice in a row",
               flawOfRuntime(runtime().c_str()));
  EXPECT_STREQ("the application failed to start with it twice in a row",
               flawOfRuntimeInProcess(runtime().c_str()));
  EXPECT_EQ(nullptr, damageOfRuntime(runtime().c_str()));
}

TEST_F(RuntimeThatFailed, IsPassedOverAsABundleToo) {
  master_.markAsFailed("My JRE", "1500");
  EXPECT_STREQ("the application failed to start with it twice in a row",
               flawOfRuntime((runtime() + ".plugin").c_str()));
}

TEST_F(RuntimeThatFailed, IsNotMeantByAnotherMarker) {
  master_.markAsFailed("My JRE", "150").markAsFailed("My JRE", "15000").markAsFailed("JRE", "1500");
  master_.addFile("QVApps/updates/skipped-My JRE").markAsFailed("Demo", "1500");
  EXPECT_EQ(nullptr, flawOfRuntime(runtime().c_str()));
}
