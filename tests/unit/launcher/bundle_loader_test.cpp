#include "launcher/jvm/bundle_loader.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

namespace fs = std::filesystem;

static std::string infoNaming(const std::string& value) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
         "<key>CFBundleExecutable</key>" +
         value + "</dict></plist>\n";
}

static std::string text(const std::string& value) {
  return "<string>" + value + "</string>";
}

class BundleLoader : public testing::Test {
 protected:
  std::string bundle() const { return folder_ / "Runtime.plugin"; }

  void writeInfo(const std::string& content) const {
    test::writeFile(bundle() + "/Contents/Info.plist", content);
  }

  void placeExecutable(const std::string& name) const {
    fs::create_directories(bundle() + "/Contents/MacOS");
    fs::copy_file(QUORVANE_BUNDLE_EXECUTABLE, bundle() + "/Contents/MacOS/" + name);
  }

  // Standard output's lines, of which the last has no end of its own in some cases.
  static std::vector<std::string> load(const std::string& path) {
    return test::logLinesOf([&] { loadOSXBundle(path.c_str()); });
  }

  static std::vector<std::string> linesWhenNotLoaded(const std::string& path) {
    return {"[BundleLoader] Creating jre path URL for path " + path, "[BundleLoader] Created NSURL",
            "[BundleLoader] Created Bundle", "[BundleLoader] Could not load JRE bundle!"};
  }

  static std::vector<std::string> linesWhenNoBundle(const std::string& path) {
    return {"[BundleLoader] Creating jre path URL for path " + path, "[BundleLoader] Created NSURL",
            "[BundleLoader] Bundle is null?"};
  }

  test::TempFolder folder_;
};

TEST_F(BundleLoader, LoadsTheExecutableThatTheInfoFileNames) {
  writeInfo(infoNaming(text("Runtime")));
  placeExecutable("Runtime");
  const std::vector<std::string> expected = {
      "[BundleLoader] Creating jre path URL for path " + bundle(), "[BundleLoader] Created NSURL",
      "[BundleLoader] Created Bundle", "bundle executable loaded",
      "[BundleLoader] Bundle Loaded OK"};
  EXPECT_EQ(expected, load(bundle()));
}

TEST_F(BundleLoader, WritesTheUrlToTheSystemLogOnly) {
  fs::create_directories(bundle());
  const test::Captured captured = test::capture([&] { loadOSXBundle(bundle().c_str()); });
  const std::string line = "[BundleLoader] URL is file://" + bundle();
  EXPECT_NE(std::string::npos, captured.err.find(line)) << captured.err;
  EXPECT_EQ(std::string::npos, captured.out.find("URL is")) << captured.out;
}

TEST_F(BundleLoader, LoadsABundleWhosePathBeginsWithTwoSlashes) {
  writeInfo(infoNaming(text("Runtime")));
  placeExecutable("Runtime");
  EXPECT_EQ("[BundleLoader] Bundle Loaded OK", load("/" + bundle()).back());
}

TEST_F(BundleLoader, LoadsABundleWhosePathHoldsBlanksAndPercentSigns) {
  writeInfo(infoNaming(text("Runtime")));
  placeExecutable("Runtime");
  const std::string odd = folder_ / "100% of it";
  fs::rename(bundle(), odd);
  EXPECT_EQ("[BundleLoader] Bundle Loaded OK", load(odd).back());
}

TEST_F(BundleLoader, LoadsThroughALinkAsARuntimesCompanionHasIt) {
  writeInfo(infoNaming(text("JavaAppletPlugin")));
  fs::create_directories(bundle() + "/Contents/MacOS");
  fs::create_symlink(QUORVANE_BUNDLE_EXECUTABLE, bundle() + "/Contents/MacOS/JavaAppletPlugin");
  EXPECT_EQ("[BundleLoader] Bundle Loaded OK", load(bundle()).back());
}

TEST_F(BundleLoader, ReportsNoBundleWhenThereIsNoFolder) {
  EXPECT_EQ(linesWhenNoBundle(bundle()), load(bundle()));
}

TEST_F(BundleLoader, ReportsNoBundleWhenThePathIsAFile) {
  test::writeFile(bundle(), "file");
  EXPECT_EQ(linesWhenNoBundle(bundle()), load(bundle()));
}

TEST_F(BundleLoader, ReportsNoBundleWhenThePathIsNotUtf8) {
  const std::string path = folder_ / "\xFF\xFE";
  fs::create_directories(path);
  EXPECT_EQ(linesWhenNoBundle(path), load(path));
}

TEST_F(BundleLoader, GoesOnWhenThereIsNoInfoFile) {
  placeExecutable("Runtime");
  EXPECT_EQ(linesWhenNotLoaded(bundle()), load(bundle()));
}

TEST_F(BundleLoader, GoesOnWhenTheInfoFileIsNoPropertyList) {
  writeInfo(std::string("\0<<<{\xFF", 6));
  EXPECT_EQ(linesWhenNotLoaded(bundle()), load(bundle()));
}

TEST_F(BundleLoader, GoesOnWhenTheInfoFileNamesNoExecutable) {
  writeInfo("<plist version=\"1.0\"><dict></dict></plist>");
  EXPECT_EQ(linesWhenNotLoaded(bundle()), load(bundle()));
}

TEST_F(BundleLoader, GoesOnWhenTheExecutablesNameIsNoText) {
  writeInfo(infoNaming("<array><string>Runtime</string></array>"));
  placeExecutable("Runtime");
  EXPECT_EQ(linesWhenNotLoaded(bundle()), load(bundle()));
}

TEST_F(BundleLoader, GoesOnWhenTheExecutableIsMissing) {
  writeInfo(infoNaming(text("Runtime")));
  EXPECT_EQ(linesWhenNotLoaded(bundle()), load(bundle()));
}

TEST_F(BundleLoader, GoesOnWhenTheExecutableIsNoLibrary) {
  writeInfo(infoNaming(text("Runtime")));
  test::writeFile(bundle() + "/Contents/MacOS/Runtime", "no library");
  EXPECT_EQ(linesWhenNotLoaded(bundle()), load(bundle()));
}

TEST_F(BundleLoader, LoadsNothingFromOutsideTheBundlesOwnFolder) {
  writeInfo(infoNaming(text("../../../outside")));
  placeExecutable("Runtime");
  fs::copy_file(QUORVANE_BUNDLE_EXECUTABLE, folder_ / "outside");
  EXPECT_EQ(linesWhenNotLoaded(bundle()), load(bundle()));
}
