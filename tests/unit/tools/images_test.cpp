#include <gtest/gtest.h>

#include <string>

#include "tools/images/default_images.h"
#include "tools/images/icns.h"
#include "tools/images/lettering.h"
#include "tools/images/picture.h"

using namespace std::string_literals;

namespace {

tools::Picture picture(int width, int height, const std::string& pixel) {
  tools::Picture made{width, height, ""};
  for (int i = 0; i < width * height; ++i) {
    made.pixels += pixel;
  }
  return made;
}

std::string pixelAt(const tools::Picture& picture, int x, int y) {
  return picture.pixels.substr((static_cast<size_t>(y) * picture.width + x) * 4, 4);
}

const std::string kRed = "\xff\0\0\xff"s;
const std::string kBlue = "\0\0\xff\xff"s;
const std::string kClear = "\xff\xff\xff\0"s;

}  // namespace

TEST(Png, IsReadAsItWasWritten) {
  tools::Picture made = picture(3, 2, kRed);
  made.pixels.replace(4, 4, "\x10\x20\x30\x40");
  const auto read = tools::decodePng(tools::encodePng(made));
  ASSERT_TRUE(read.has_value());
  EXPECT_EQ(3, read->width);
  EXPECT_EQ(2, read->height);
  EXPECT_TRUE(made.pixels == read->pixels);
}

TEST(Png, ThatIsCutAnywhereIsRefused) {
  const std::string png = tools::encodePng(picture(3, 2, kRed));
  for (size_t size = 0; size < png.size(); ++size) {
    EXPECT_FALSE(tools::decodePng(png.substr(0, size)).has_value()) << size;
  }
}

// Nor is memory taken for what is not there.
TEST(Png, WithAChunkThatClaimsMoreThanTheFileHasIsRefused) {
  std::string png = tools::encodePng(picture(3, 2, kRed));
  const size_t data = png.find("IDAT");
  ASSERT_NE(std::string::npos, data);
  png.replace(data - 4, 4, "\x7f\xff\xff\xff");
  EXPECT_FALSE(tools::decodePng(png).has_value());
}

TEST(Picture, PaintedOverAnotherMixesByItsOpacityAndIsCutAtTheEdges) {
  tools::Picture below = picture(3, 3, kBlue);
  tools::paint(&below, picture(2, 2, kRed), 2, 2);
  tools::paint(&below, picture(2, 2, "\xff\xff\xff\x80"s), -1, -1);
  tools::paint(&below, picture(1, 1, kClear), 1, 1);
  EXPECT_TRUE(kRed == pixelAt(below, 2, 2));
  EXPECT_TRUE(kBlue == pixelAt(below, 1, 1));
  EXPECT_TRUE("\x80\x80\xff\xff" == pixelAt(below, 0, 0));
}

TEST(Picture, OfItsOwnSizeStaysAsItIs) {
  tools::Picture made = picture(4, 4, kRed);
  made.pixels.replace(20, 4, kBlue);
  EXPECT_TRUE(made.pixels == tools::scaled(made, 4, 4).pixels);
}

TEST(Icns, GivesTheLargestOfItsPictures) {
  const tools::Picture icon = tools::defaultIcon();
  EXPECT_EQ(tools::ICON_SIDE, icon.width);
  EXPECT_EQ(tools::ICON_SIDE, icon.height);
  const std::string icns = tools::encodeIcns(icon);
  EXPECT_EQ("", tools::faultOfIcns(icns));
  const auto largest = tools::largestIn(icns);
  ASSERT_TRUE(largest.has_value());
  EXPECT_TRUE(icon.pixels == largest->pixels);
}

TEST(Icns, ThatIsCutAnywhereHasAFault) {
  const std::string icns = "icns\0\0\0\x16ic07\0\0\0\x0eno PNG"s;
  EXPECT_EQ("", tools::faultOfIcns(icns));
  for (size_t size = 0; size < icns.size(); ++size) {
    EXPECT_NE("", tools::faultOfIcns(icns.substr(0, size))) << size;
    EXPECT_FALSE(tools::largestIn(icns.substr(0, size)).has_value());
  }
}

TEST(Lettering, TakesScriptsWhoseLettersStandSideBySide) {
  for (const char* text : {"Hello", "Größe & Maß", "Ελληνικά", "Привет", "Հայերեն", "a – “b”…"}) {
    EXPECT_TRUE(tools::isDrawable(text)) << text;
  }
}

TEST(Lettering, LeavesTheOthersOut) {
  for (const char* text : {"", "\xff", "中文", "שלום", "مرحبا", "हिन्दी", "e\u0301", "a\u200Db",
                           "\U0001F600", "a\u202Eb", "a\tb"}) {
    EXPECT_FALSE(tools::isDrawable(text)) << text;
  }
}
