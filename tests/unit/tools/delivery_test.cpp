#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"
#include "tools/delivery/delivery_reader.h"
#include "tools/delivery/delivery_writer.h"
#include "tools/delivery/file_digest.h"
#include "tools/delivery/index_file.h"

namespace fs = std::filesystem;
using tools::DeliveryFormat;

namespace {

// Runs a Python program with arguments; what it prints is the result.
std::string python(const std::string& program, const std::vector<std::string>& words) {
  test::Command command;
  command.arguments = {"/usr/bin/python3", "-c", program};
  command.arguments.insert(command.arguments.end(), words.begin(), words.end());
  const test::Result result = test::run(command);
  EXPECT_EQ(0, result.status) << result.err;
  return result.out;
}

// A bundle with what a bundle may hold: modes, links to a file and to a folder, an empty folder,
// an empty file, a name beyond ASCII, and enough bytes for more than one block.
class Delivery : public testing::Test {
 protected:
  Delivery() {
    test::writeFile(bundle_ + "/Contents/MacOS/Größe", test::noise(700000), 0755);
    test::writeFile(bundle_ + "/Contents/Info.plist", "<plist/>\n", 0644);
    test::writeFile(bundle_ + "/Contents/Resources/empty", "", 0600);
    fs::create_directories(bundle_ + "/Contents/Void");
    fs::permissions(bundle_ + "/Contents/Void", fs::perms{0700});
    fs::create_symlink("MacOS/Größe", bundle_ + "/Contents/link");
    fs::create_directory_symlink("Resources", bundle_ + "/Contents/folder");
  }

  std::string write(DeliveryFormat format, const std::string& name = "download") const {
    const std::string path = folder_ / name + tools::deliverySuffix(format);
    tools::writeDelivery(bundle_, path, format);
    return path;
  }

  // The message with which the archive is refused, without its path.
  std::string refusal(const std::string& archive) const {
    const std::string place = folder_ / "refused";
    fs::remove_all(place);
    fs::create_directory(place);
    try {
      tools::unpackDelivery(archive, place);
    } catch (const std::runtime_error& error) {
      const std::string text = error.what();
      const std::string start = archive + " cannot be unpacked: ";
      EXPECT_EQ(0u, text.find(start)) << text;
      return text.substr(std::min(text.size(), start.size()));
    }
    return "accepted";
  }

  // The refusal of a tar with these entries, lines of Python about `add(name, type, target)`.
  std::string refusalOf(const std::string& lines) const {
    const std::string archive = folder_ / "hostile.tar.gz";
    python(
        "import io, sys, tarfile\n"
        "tar = tarfile.open(sys.argv[1], 'w:gz')\n"
        "def add(name, type=tarfile.REGTYPE, target=''):\n"
        "    item = tarfile.TarInfo(name)\n"
        "    item.type, item.linkname, item.mode = type, target, 0o755\n"
        "    item.size = 4 if type == tarfile.REGTYPE else 0\n"
        "    tar.addfile(item, io.BytesIO(b'text'))\n"
        "FOLDER, LINK, HARD = tarfile.DIRTYPE, tarfile.SYMTYPE, tarfile.LNKTYPE\n" +
            lines + "\ntar.close()\n",
        {archive});
    return refusal(archive);
  }

  const test::TempFolder folder_;
  const std::string bundle_ = folder_ / "Größe.app";
};

const char kZipListing[] =
    "import sys, zipfile\n"
    "for item in zipfile.ZipFile(sys.argv[1]).infolist():\n"
    "    print(item.filename, oct(item.external_attr >> 16), item.date_time,\n"
    "          item.create_system, bool(item.flag_bits & 0x800))\n";

TEST_F(Delivery, AsAZipIsSortedWithModesLinksAndMarkedNames) {
  EXPECT_EQ(
      "Größe.app/ 0o40755 (1980, 1, 1, 0, 0, 0) 3 True\n"
      "Größe.app/Contents/ 0o40755 (1980, 1, 1, 0, 0, 0) 3 True\n"
      "Größe.app/Contents/Info.plist 0o100644 (1980, 1, 1, 0, 0, 0) 3 True\n"
      "Größe.app/Contents/MacOS/ 0o40755 (1980, 1, 1, 0, 0, 0) 3 True\n"
      "Größe.app/Contents/MacOS/Größe 0o100755 (1980, 1, 1, 0, 0, 0) 3 True\n"
      "Größe.app/Contents/Resources/ 0o40755 (1980, 1, 1, 0, 0, 0) 3 True\n"
      "Größe.app/Contents/Resources/empty 0o100600 (1980, 1, 1, 0, 0, 0) 3 True\n"
      "Größe.app/Contents/Void/ 0o40700 (1980, 1, 1, 0, 0, 0) 3 True\n"
      "Größe.app/Contents/folder 0o120777 (1980, 1, 1, 0, 0, 0) 3 True\n"
      "Größe.app/Contents/link 0o120777 (1980, 1, 1, 0, 0, 0) 3 True\n",
      python(kZipListing, {write(DeliveryFormat::zip)}));
}

TEST_F(Delivery, AsATarNamesNoUserAndNoTimeOfDay) {
  EXPECT_EQ(
      "Größe.app 0o755 0 0 '' '' 315532800 5 \n"
      "Größe.app/Contents 0o755 0 0 '' '' 315532800 5 \n"
      "Größe.app/Contents/Info.plist 0o644 0 0 '' '' 315532800 0 \n"
      "Größe.app/Contents/MacOS 0o755 0 0 '' '' 315532800 5 \n"
      "Größe.app/Contents/MacOS/Größe 0o755 0 0 '' '' 315532800 0 \n"
      "Größe.app/Contents/Resources 0o755 0 0 '' '' 315532800 5 \n"
      "Größe.app/Contents/Resources/empty 0o600 0 0 '' '' 315532800 0 \n"
      "Größe.app/Contents/Void 0o700 0 0 '' '' 315532800 5 \n"
      "Größe.app/Contents/folder 0o777 0 0 '' '' 315532800 2 Resources\n"
      "Größe.app/Contents/link 0o777 0 0 '' '' 315532800 2 MacOS/Größe\n",
      python("import sys, tarfile\n"
             "for item in tarfile.open(sys.argv[1]):\n"
             "    print(item.name, oct(item.mode), item.uid, item.gid, repr(item.uname),\n"
             "          repr(item.gname), int(item.mtime), item.type.decode(), item.linkname)\n",
             {write(DeliveryFormat::tarGz)}));
  const std::string head = test::readFile(folder_ / "download.tar.gz").substr(4, 4);
  EXPECT_EQ(std::string(4, '\0'), head);
}

TEST_F(Delivery, UnpackedByOtherProgramsIsTheSameTree) {
  const std::string zip = write(DeliveryFormat::zip);
  const std::string tar = write(DeliveryFormat::tarGz);
  const std::vector<std::vector<std::string>> programs = {{"/usr/bin/unzip", "-q", zip},
                                                          {"/usr/bin/bsdtar", "-xf", zip},
                                                          {"/usr/bin/bsdtar", "-xpf", tar},
                                                          {"/bin/tar", "-xpf", tar}};
  int count = 0;
  for (const std::vector<std::string>& program : programs) {
    test::Command command;
    command.arguments = program;
    command.folder = folder_ / std::to_string(count++);
    command.environment = {{"LC_ALL", "C.UTF-8"}};
    fs::create_directory(command.folder);
    const test::Result result = test::run(command);
    EXPECT_EQ(0, result.status) << program[0] << result.err;
    EXPECT_EQ(tools::digestOfFolder(bundle_), tools::digestOfFolder(command.folder + "/Größe.app"))
        << program[0] << " " << program.back();
  }
}

TEST_F(Delivery, UnpackedAgainIsTheSameTree) {
  for (const DeliveryFormat format : {DeliveryFormat::zip, DeliveryFormat::tarGz}) {
    const std::string place = folder_ / "again" + tools::deliverySuffix(format);
    fs::create_directory(place);
    tools::unpackDelivery(write(format), place);
    EXPECT_EQ(tools::digestOfFolder(bundle_), tools::digestOfFolder(place + "/Größe.app"));
  }
}

TEST_F(Delivery, MadeLaterInAnotherZoneAndLocaleHasTheSameBytes) {
  for (const DeliveryFormat format : {DeliveryFormat::zip, DeliveryFormat::tarGz}) {
    setenv("TZ", "Asia/Tokyo", 1);
    const std::string first = test::readFile(write(format));
    setenv("TZ", "America/New_York", 1);
    setenv("LC_ALL", "C", 1);
    fs::last_write_time(bundle_ + "/Contents/Info.plist",
                        fs::file_time_type::clock::now() - std::chrono::hours(1000));
    EXPECT_TRUE(first == test::readFile(write(format))) << tools::deliverySuffix(format);
    EXPECT_STREQ("America/New_York", getenv("TZ"));
  }
}

TEST_F(Delivery, TakesItsTimeFromTheEnvironment) {
  setenv("SOURCE_DATE_EPOCH", "1700000000", 1);  // 14 November 2023, 22:13:20 UTC
  setenv("TZ", "Asia/Tokyo", 1);
  EXPECT_NE(std::string::npos,
            python(kZipListing, {write(DeliveryFormat::zip)}).find("(2023, 11, 14, 22, 13, 20)"));
}

TEST_F(Delivery, WithADeviceOrAMissingFolderIsNotWritten) {
  ASSERT_EQ(0, mkfifo((bundle_ + "/Contents/pipe").c_str(), 0600));
  EXPECT_THROW(write(DeliveryFormat::zip, "none"), std::runtime_error);
  EXPECT_FALSE(test::exists(folder_ / "none.zip"));
  EXPECT_THROW(tools::writeDelivery(folder_ / "nowhere", folder_ / "none.zip", DeliveryFormat::zip),
               std::runtime_error);
}

TEST_F(Delivery, ThatLeadsOutsideIsRefused) {
  EXPECT_EQ("the entry '/tmp/x' is refused: its path is absolute", refusalOf("add('/tmp/x')"));
  EXPECT_EQ("the entry '../x' is refused: its path leads upwards", refusalOf("add('../x')"));
  EXPECT_EQ("the entry 'a/../../x' is refused: its path leads upwards",
            refusalOf("add('a/../../x')"));
  EXPECT_EQ("the entry 'l' is refused: it is a link to an absolute path or to nothing",
            refusalOf("add('l', LINK, '/etc')"));
  EXPECT_EQ("the entry 'a/l' is refused: it is a link that leads outside",
            refusalOf("add('a/l', LINK, '../../etc')"));
  EXPECT_EQ("the entry 'a/l' is refused: it is a link that leads upwards behind a name",
            refusalOf("add('a/l', LINK, 'b/../../..')"));
  EXPECT_EQ("the entry 'h' is refused: it is a hard link", refusalOf("add('h', HARD, 'x')"));
  EXPECT_EQ("the entry 'd' is refused: it is neither a file, a folder nor a link",
            refusalOf("add('d', tarfile.CHRTYPE)"));
  EXPECT_FALSE(test::exists(folder_ / "x"));
}

TEST_F(Delivery, ThatWritesThroughALinkOrTwiceIsRefused) {
  EXPECT_EQ("the entry 'l' is refused: another entry is below it, and it is no folder",
            refusalOf("add('d', FOLDER)\nadd('l', LINK, 'd')\nadd('l/x')"));
  EXPECT_EQ("the entry 'l' is refused: it comes twice",
            refusalOf("add('d', FOLDER)\nadd('l', LINK, 'd')\nadd('l', FOLDER)"));
  EXPECT_EQ("the entry 'x' cannot be written: File exists", refusalOf("add('x')\nadd('x')"));
  EXPECT_EQ("the entry 'x' cannot be written: File exists",
            refusalOf("add('x', LINK, 'y')\nadd('./x')"));
  EXPECT_EQ(std::vector<std::string>{"x"}, test::namesIn(folder_ / "refused"));
}

TEST_F(Delivery, MayHaveLinksInsideAndItsFoldersLate) {
  EXPECT_EQ("accepted", refusalOf("add('a/b/x')\nadd('a/b', FOLDER)\nadd('a/l', LINK, '../a/b')\n"
                                  "add('a/b/l', LINK, '../../a/./b/x')\nadd('./', FOLDER)"));
  EXPECT_EQ("text", test::readFile(folder_ / "refused/a/b/l"));
}

TEST_F(Delivery, LosesSetUserBitsAndStaysReadable) {
  const std::string archive = folder_ / "modes.tar";
  python(
      "import io, sys, tarfile\n"
      "tar = tarfile.open(sys.argv[1], 'w')\n"
      "for name, mode in (('s', 0o4755), ('n', 0)):\n"
      "    item = tarfile.TarInfo(name)\n"
      "    item.mode = mode\n"
      "    tar.addfile(item, io.BytesIO(b''))\n"
      "tar.close()\n",
      {archive});
  fs::create_directory(folder_ / "modes");
  tools::unpackDelivery(archive, folder_ / "modes");
  struct stat status {};
  ASSERT_EQ(0, stat((folder_ / "modes/s").c_str(), &status));
  EXPECT_EQ(0755u, status.st_mode & 07777u);
  EXPECT_EQ(0600u, test::modeOf(folder_ / "modes/n"));
}

TEST_F(Delivery, ThatIsDamagedOrAnotherFileIsRefused) {
  for (const DeliveryFormat format : {DeliveryFormat::zip, DeliveryFormat::tarGz}) {
    const std::string bytes = test::readFile(write(format));
    const std::string damaged = folder_ / "damaged";
    for (const size_t size : {size_t{0}, size_t{3}, bytes.size() / 2, bytes.size() - 12}) {
      test::writeFile(damaged, bytes.substr(0, size));
      EXPECT_NE("accepted", refusal(damaged)) << size << tools::deliverySuffix(format);
    }
  }
  std::string changed = test::readFile(folder_ / "download.zip");
  changed[changed.size() / 2] ^= 1;
  test::writeFile(folder_ / "changed", changed);
  EXPECT_NE("accepted", refusal(folder_ / "changed"));
  test::writeFile(folder_ / "text", "no archive\n");
  EXPECT_NE("accepted", refusal(folder_ / "text"));
  EXPECT_NE("accepted", refusal(folder_ / "nowhere"));
}

TEST_F(Delivery, IsUnpackedInPartsWhenAskedTo) {
  fs::create_directory(folder_ / "part");
  tools::unpackDelivery(write(DeliveryFormat::zip), folder_ / "part", [](const std::string& path) {
    return path == "Größe.app/Contents/Info.plist";
  });
  EXPECT_EQ(std::vector<std::string>{"Info.plist"},
            test::namesIn(folder_ / "part/Größe.app/Contents"));
}

TEST_F(Delivery, HasADigestThatSeesWhatCounts) {
  const std::string before = tools::digestOfFolder(bundle_);
  fs::last_write_time(bundle_ + "/Contents/Info.plist", fs::file_time_type::clock::now());
  EXPECT_EQ(before, tools::digestOfFolder(bundle_));
  fs::permissions(bundle_ + "/Contents/Info.plist", fs::perms{0755});
  const std::string mode = tools::digestOfFolder(bundle_);
  EXPECT_NE(before, mode);
  fs::remove(bundle_ + "/Contents/link");
  fs::create_symlink("Info.plist", bundle_ + "/Contents/link");
  const std::string link = tools::digestOfFolder(bundle_);
  EXPECT_NE(mode, link);
  test::writeFile(bundle_ + "/Contents/Resources/empty", "x", 0600);
  EXPECT_NE(link, tools::digestOfFolder(bundle_));
}

TEST(FileDigest, IsThatOfTheStandard) {
  EXPECT_EQ("ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad",
            tools::digestOfText("abc"));
}

TEST(IndexFile, IsReadByAnotherReaderAsWritten) {
  const test::TempFolder folder;
  test::writeFile(folder / "index.json",
                  tools::encodeIndex("G\"r\\\n\x01öße", {{"a.zip", "macos-arm64", "offline", "3",
                                                          "1.4.2", 5000000000, "00ff"},
                                                         {"b.zip", "", "online", "3", "", 0, ""}}));
  EXPECT_EQ(
      "{'application': 'G\"r\\\\\\n\\x01öße', 'files': [{'name': 'a.zip', 'target': 'macos-arm64', "
      "'kind': 'offline', 'version': '3', 'display_version': '1.4.2', 'size': 5000000000, "
      "'sha256': '00ff'}, {'name': 'b.zip', 'target': '', 'kind': 'online', 'version': '3', "
      "'size': 0, 'sha256': ''}]}\n",
      python("import json, sys\nprint(json.load(open(sys.argv[1], encoding='utf-8')))",
             {folder / "index.json"}));
}

}  // namespace
