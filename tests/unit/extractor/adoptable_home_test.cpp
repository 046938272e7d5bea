// Which folders may be copied as a Java runtime.
#include "extractor/runtime/adoptable_home.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "launcher/jvm/jvm_launch.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

namespace fs = std::filesystem;

class AdoptableHome : public testing::Test {
 protected:
  // Whether `home` may be copied; what was logged is in `log_`.
  bool adopts(const std::string& home) {
    bool result = false;
    log_ = test::capture([&] { result = isAdoptableHome(home.c_str()); }).out;
    return result;
  }

  void expectShared(const std::string& home) {
    EXPECT_FALSE(adopts(home)) << home;
    EXPECT_NE(log_.find("holds more than a JRE"), std::string::npos) << home << ": " << log_;
  }

  // Returns a folder with a JVM library at `place`.
  std::string homeWith(const std::string& place) {
    const std::string home = folder_ / ("home" + std::to_string(++homes_));
    test::writeFile(home + "/" + place, "a library");
    return home;
  }

  test::TempFolder folder_;
  std::string log_;
  int homes_ = 0;
};

TEST_F(AdoptableHome, FoldersOfTheSystemAreRefusedByAnyPath) {
  for (const char* home : {"", "/", "//", "/.", "/usr/..", "/usr", "/usr/", "//usr/.",
                           "/usr/bin/..", "/usr/local", "/usr/./local//", "/opt", "/opt/."}) {
    if (test::exists(home) || home[0] == 0) {
      expectShared(home);
    }
  }
}

TEST_F(AdoptableHome, LinksToFoldersOfTheSystemAreRefused) {
  fs::create_symlink("/usr", folder_ / "link");
  fs::create_symlink(folder_ / "link", folder_ / "other");
  expectShared(folder_ / "link");
  expectShared(folder_ / "other");
  expectShared(folder_ / "other/local");
}

TEST_F(AdoptableHome, AJvmLibraryWhereALaunchWouldFindItIsEnough) {
  for (const char* place :
       {"lib/server/libjvm.so", "lib/server/libjvm.dylib", "Contents/Home/lib/server/libjvm.so",
        "Contents/Home/Contents/Home/jre/lib/server/libjvm.dylib"}) {
    EXPECT_TRUE(adopts(homeWith(place))) << place;
    EXPECT_EQ(log_, "") << place;
  }
}

TEST_F(AdoptableHome, AJvmLibraryElsewhereIsNotEnough) {
  for (const char* place :
       {"lib/libjvm.so", "jre/lib/server/libjvm.so", "lib/server/libjvm.jnilib",
        "Contents/Home/jre/lib/server/libjvm.so", "lib/server/libjvm.so/folder"}) {
    EXPECT_FALSE(adopts(homeWith(place))) << place;
    EXPECT_NE(log_.find("No JVM library in "), std::string::npos) << place;
  }
}

// What is copied of a bundle becomes a plain folder from its Contents/Home on.
TEST_F(AdoptableHome, AJvmLibraryBesideContentsHomeIsNotEnough) {
  const std::string home = homeWith("lib/server/libjvm.so");
  fs::create_directories(home + "/Contents/Home/bin");
  EXPECT_FALSE(adopts(home));
}

TEST_F(AdoptableHome, AMissingFolderIsRefused) {
  EXPECT_FALSE(adopts(folder_ / "missing"));
}

TEST(JvmLibrary, IsSeenAtEachPlaceOfALaunch) {
  for (const char* place : {"lib/server/libjvm.so", "Contents/Home/lib/server/libjvm.so",
                            "Contents/Home/jre/lib/server/libjvm.so"}) {
    const test::TempFolder folder;
    EXPECT_FALSE(holdsJvmLibrary(folder.path().c_str()));
    test::writeFile(folder / place, "a library");
    EXPECT_TRUE(holdsJvmLibrary(folder.path().c_str())) << place;
  }
}
