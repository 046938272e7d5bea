#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

#include "tests/blackbox/pack/small_project.h"
#include "tests/support/background.h"
#include "tests/support/files.h"
#include "tests/support/picture.h"

// Icons and splashes, looked at with ImageMagick.

namespace fs = std::filesystem;
using namespace std::string_literals;

namespace {

const std::string kResources = test::bundleIn("dist", "offline") + "/Contents/Resources";

unsigned long numberAt(const std::string& bytes, size_t at) {
  unsigned long number = 0;
  for (size_t i = at; i < at + 4; ++i) {
    number = number << 8 | static_cast<unsigned char>(bytes.at(i));
  }
  return number;
}

// The pictures of an .icns file, by their types. Its lengths must be right.
std::map<std::string, std::string> picturesIn(const std::string& icns) {
  EXPECT_EQ("icns", icns.substr(0, 4));
  EXPECT_EQ(icns.size(), numberAt(icns, 4));
  std::map<std::string, std::string> pictures;
  for (size_t at = 8; at < icns.size(); at += numberAt(icns, at + 4)) {
    pictures[icns.substr(at, 4)] = icns.substr(at + 8, numberAt(icns, at + 4) - 8);
  }
  return pictures;
}

// Runs a shell command, and returns what it says.
std::string magick(const std::string& folder, const std::string& words) {
  return test::runShell(folder, words + " 2>&1").out;
}

class PackIcon : public testing::Test {
 protected:
  void build() {
    ASSERT_TRUE(project_.build().succeeded());
    icns_ = test::readFile(project_ / kResources + "/Small App.icns");
  }

  // Writes the picture of the .icns file that has this type.
  std::string pictureOf(const std::string& type) {
    const std::string path = project_ / (type + ".png");
    test::writeFile(path, picturesIn(icns_)[type]);
    return path;
  }

  // Writes the splash that the installer carries.
  std::string splash() {
    const std::string tail = test::readFile(project_ / kResources + "/Tail");
    const size_t start = tail.find("\x89PNG");
    const size_t end = tail.find("IEND", start);
    EXPECT_NE(std::string::npos, end);
    const std::string path = project_ / "carried.png";
    test::writeFile(path, tail.substr(start, end + 8 - start));
    return path;
  }

  std::string sizeOf(const std::string& png) {
    return magick(project_.path(), "identify -format '%m %wx%h' '" + png + "'");
  }

  test::Picture look(const std::string& png) {
    magick(project_.path(), "convert '" + png + "' -background white -flatten look.ppm");
    return test::Picture(project_ / "look.ppm");
  }

  // How much the pictures differ: 0 for equal ones, 1 for black and white.
  double difference(const std::string& one, const std::string& other) {
    const std::string said =
        magick(project_.path(), "compare -metric RMSE '" + one + "' '" + other + "' null:");
    const size_t open = said.find('(');
    EXPECT_NE(std::string::npos, open) << said;
    return std::stod(said.substr(open + 1));
  }

  void takePngIcon() {
    project_.replace("small.icns", "icon.png");
    test::writeQuartersPng(project_ / "icon.png", 1024, 1024);
  }

  test::SmallProject project_;
  std::string icns_;
};

TEST_F(PackIcon, OfOnePngHasEverySizeOfACurrentSystem) {
  takePngIcon();
  build();
  const std::map<std::string, std::string> sizes = {
      {"ic07", "PNG 128x128"},   {"ic08", "PNG 256x256"}, {"ic09", "PNG 512x512"},
      {"ic10", "PNG 1024x1024"}, {"ic11", "PNG 32x32"},   {"ic12", "PNG 64x64"},
      {"ic13", "PNG 256x256"},   {"ic14", "PNG 512x512"}};
  std::map<std::string, std::string> found;
  for (const auto& [type, bytes] : picturesIn(icns_)) {
    found[type] = sizeOf(pictureOf(type));
  }
  EXPECT_EQ(sizes, found);
}

TEST_F(PackIcon, OfOnePngShowsItInEverySize) {
  takePngIcon();
  build();
  for (const char* type : {"ic11", "ic12", "ic07", "ic08", "ic09", "ic10"}) {
    const test::Picture picture = look(pictureOf(type));
    const int quarter = picture.width() / 4;
    const int last = picture.width() - 1 - quarter;
    EXPECT_EQ(test::RED, picture.at(quarter, quarter)) << type;
    EXPECT_EQ(test::GREEN, picture.at(last, quarter)) << type;
    EXPECT_EQ(test::BLUE, picture.at(quarter, last)) << type;
    EXPECT_EQ(test::YELLOW, picture.at(last, last)) << type;
  }
}

TEST_F(PackIcon, IsScaledAsAnotherProgramScales) {
  project_.replace("small.icns", "icon.png");
  magick(project_.path(), "convert -seed 7 -size 1024x1024 plasma:red-blue PNG32:icon.png");
  build();
  magick(project_.path(),
         "convert icon.png -colorspace RGB -resize 128x128 -colorspace sRGB small.png");
  EXPECT_LT(difference(pictureOf("ic07"), "small.png"), 0.01);
  EXPECT_EQ(0, difference(pictureOf("ic10"), "icon.png"));
}

TEST_F(PackIcon, KeepsWhatIsTransparent) {
  project_.replace("small.icns", "icon.png");
  magick(
      project_.path(),
      "convert -size 1024x1024 xc:none -fill red -draw 'rectangle 512,0 1023,1023' PNG32:icon.png");
  build();
  // The black of the invisible half does not darken the edge.
  const std::string format =
      "%[pixel:p{20,8}] %[pixel:p{4,8}] %[fx:255*p{16,8}.r],%[fx:255*p{16,8}.g]";
  EXPECT_EQ("srgba(255,0,0,1) srgba(0,0,0,0) 255,0",
            magick(project_.path(),
                   "convert '" + pictureOf("ic11") + "' -format '" + format + "' info:"));
}

TEST_F(PackIcon, OfAnotherSizeIsRefused) {
  project_.replace("small.icns", "icon.png");
  test::writeQuartersPng(project_ / "icon.png", 512, 1024);
  project_.build().fails(
      "quorvane.toml: [application] icon is wrong: icon.png has 512 × 1024 pixels; an icon is made "
      "from 1024 × 1024");
}

TEST_F(PackIcon, ThatIsDamagedIsRefused) {
  const std::string png = [this] {
    test::writeQuartersPng(project_ / "quarters.png", 1024, 1024);
    return test::readFile(project_ / "quarters.png");
  }();
  const std::pair<std::string, std::string> damaged[] = {
      {"ICNS and more", "is not a valid .icns image"},
      {"icn", "is not a valid .icns image"},
      {"icns\0\0\0\x16ic07\0\0\0\x0eno PN"s,
       "is damaged: it has 21 bytes, and says that it has 22"},
      {"icns\0\0\0\x16ic07\0\0\0\x0fno PNG"s, "is damaged: its pictures do not fill it"},
      {"icns\0\0\0\x16ic07\0\0\0\0no PNG"s, "is damaged: its pictures do not fill it"},
      {"icns\0\0\0\x0cic07"s, "is damaged: its pictures do not fill it"},
      {"icns\0\0\0\x08"s, "has no picture"}};
  for (const auto& [bytes, fault] : damaged) {
    test::writeFile(project_ / "small.icns", bytes);
    project_.build().fails("quorvane.toml: [application] icon is wrong: small.icns " + fault);
  }
  project_.replace("small.icns", "icon.png");
  test::writeFile(project_ / "icon.png", png.substr(0, png.size() / 2));
  project_.build().reports(
      "quorvane-pack: quorvane.toml: [application] icon is wrong: icon.png is not a valid PNG "
      "image of at most 4096 pixels a side\n");
}

TEST_F(PackIcon, IsADefaultOneWhereNoneIsNamed) {
  project_.replace("icon = \"small.icns\"\n", "");
  build();
  EXPECT_EQ(0, difference(pictureOf("ic10"), QUORVANE_SOURCE "/tools/images/default_icon.png"));
  for (const char* bundle : {"launcher", "online"}) {
    EXPECT_TRUE(icns_ == test::readFile(project_ / test::bundleIn("dist", bundle) +
                                        "/Contents/Resources/Small App.icns"))
        << bundle;
  }
}

TEST_F(PackIcon, IsCarriedUnchangedIfItIsAnIcnsFile) {
  build();
  EXPECT_EQ(test::readFile(project_ / "small.icns"), icns_);
}

using PackOwnSplash = PackIcon;

// The window would have no size.
TEST_F(PackOwnSplash, ThatCannotBeReadIsRefused) {
  const std::string png = test::readFile(project_ / "splash.png");
  for (const std::string& bytes : {png.substr(0, 40), "\x89PNG\r\n\x1a\n"s, ""s}) {
    test::writeFile(project_ / "splash.png", bytes);
    project_.build().fails(
        "quorvane.toml: [installer] splash is wrong: splash.png is not a valid PNG image of at "
        "most 4096 pixels a side");
  }
}

TEST_F(PackOwnSplash, ThatIsTooLargeIsRefused) {
  magick(project_.path(), "convert -size 4097x1 xc:red splash.png");
  project_.build().ends(1);
  magick(project_.path(), "convert -size 4096x1 xc:red splash.png");
  project_.build().ends(0);
}

TEST_F(PackOwnSplash, IsCarriedUnchanged) {
  build();
  EXPECT_TRUE(test::readFile(splash()) == test::readFile(project_ / "splash.png"));
}

class PackSplash : public PackIcon {
 protected:
  void SetUp() override { project_.replace("splash = \"splash.png\"\n", ""); }

  // The rows in which pixels are dark, as the name's letters are.
  static int darkRows(const test::Picture& picture, int from, int to) {
    int rows = 0;
    for (int y = from; y < to; ++y) {
      bool isDark = false;
      for (int x = 0; x < picture.width(); ++x) {
        isDark = isDark || (picture.at(x, y) >> 8 & 0xFF) < 0x60;
      }
      rows += isDark ? 1 : 0;
    }
    return rows;
  }
};

constexpr int kNameTop = 180;

TEST_F(PackSplash, ShowsIconAndNameWhereNoneIsNamed) {
  takePngIcon();
  build();
  const std::string path = splash();
  EXPECT_EQ("PNG 480x280", sizeOf(path));
  const test::Picture picture = look(path);
  EXPECT_EQ(test::RED, picture.at(240 - 32, 44 + 32));
  EXPECT_EQ(test::YELLOW, picture.at(240 + 32, 44 + 96));
  EXPECT_LT(20, darkRows(picture, kNameTop, picture.height()));
}

TEST_F(PackSplash, TakesThePictureFromAnIcnsFile) {
  takePngIcon();
  build();
  const std::string drawn = test::readFile(splash());
  test::writeFile(project_ / "small.icns", icns_);
  project_.replace("icon.png", "small.icns");
  build();
  EXPECT_TRUE(drawn == test::readFile(splash()));
}

TEST_F(PackSplash, ShowsTheDefaultIconIfTheIcnsFileHasNoPng) {
  build();
  const std::string drawn = test::readFile(splash());
  project_.replace("icon = \"small.icns\"\n", "");
  build();
  EXPECT_TRUE(drawn == test::readFile(splash()));
}

TEST_F(PackSplash, FitsALongName) {
  project_.replace("version = \"3\"",
                   "version = \"3\"\ndisplay_name = \"" + std::string(250, 'W') + "\"");
  build();
  const test::Picture picture = look(splash());
  EXPECT_LT(8, darkRows(picture, kNameTop, picture.height()));
  for (int y = kNameTop; y < picture.height(); ++y) {
    for (const int x : {0, 20, 459, 479}) {
      EXPECT_LT(0xC0u, picture.at(x, y) >> 8 & 0xFF) << x << " " << y;
    }
  }
}

TEST_F(PackSplash, LeavesOutANameThatItCannotDraw) {
  project_.replace("version = \"3\"", "version = \"3\"\ndisplay_name = \"中文\"");
  build();
  const test::Picture picture = look(splash());
  EXPECT_EQ(0, darkRows(picture, 210, picture.height()));
  EXPECT_LT(20, darkRows(picture, 76, 204));
}

TEST_F(PackSplash, IsOnTheUpdateSiteToo) {
  build();
  const std::string updater = project_.extracted("dist/site/Quorvane-Quorvane-5-archive.p2.l2");
  EXPECT_TRUE(test::readFile(splash()) == test::readFile(updater + "/nativesplash.png"));
}

// With the product's own executables: the window has the size of the image.
TEST_F(PackSplash, ThatIsDrawnIsWhatAnInstallerShows) {
  for (const char* name : {"extractor", "lzma64"}) {
    fs::copy_file(std::string(QUORVANE_BIN) + "/" + name, project_ / "bin" + "/" + name,
                  fs::copy_options::overwrite_existing);
  }
  build();
  const test::OwnDisplay display;
  test::Command command = test::packCommand(project_.path(), {"run", "--verbose"});
  command.environment = {{"DISPLAY", display.name()}};
  test::transcriptOf(command).mentions("[Splash] Resizing to 480 280\n");
}

// Whatever fonts and libraries a machine has: those that are used are part of the packager. Changed
// bytes here change the installers of every application without pictures of its own.
TEST_F(PackSplash, HasTheSameBytesOnEveryMachine) {
  project_.replace("icon = \"small.icns\"\n", "");
  build();
  const auto digest = [this](const std::string& path) {
    return magick(project_.path(), "sha256sum < '" + path + "'").substr(0, 64);
  };
  EXPECT_EQ("64570c925e42673ea8b28c0dc7161de3087539350265a5919e76269d79675b5b", digest(splash()));
  EXPECT_EQ("8689225be000f8e08512e57befbbbe0cb3a10d1c8b63a5489993ca8e4c8873a8",
            digest(project_ / kResources + "/Small App.icns"));
}

}  // namespace
