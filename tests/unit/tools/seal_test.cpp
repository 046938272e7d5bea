#include "tools/apple/seal.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/support/files.h"
#include "tests/support/mach_file.h"
#include "tests/support/temp_folder.h"
#include "tools/apple/sealed_files.h"
#include "tools/system/input_error.h"
#include "tools/system/sha256_digest.h"

namespace fs = std::filesystem;

namespace {

std::string digestOf(const std::string& bytes) {
  return tools::sha256Of(bytes.data(), bytes.size());
}

std::string base64(const std::string& bytes) {
  static const char* const kLetters =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (size_t i = 0; i < bytes.size(); i += 3) {
    uint32_t group = 0;
    for (size_t j = i; j < i + 3; ++j) {
      group = group << 8 | (j < bytes.size() ? static_cast<unsigned char>(bytes[j]) : 0u);
    }
    for (size_t j = 0; j < 4; ++j) {
      text += i + j > bytes.size() ? '=' : kLetters[group >> (18 - 6 * j) & 63];
    }
  }
  return text;
}

// A sealed bundle with a resource whose name needs escaping, a link, an optional text and a
// library.
class SealedBundle {
 public:
  SealedBundle() {
    const std::string info = "<plist>the bundle</plist>";
    test::writeFile(contents_ + "/Info.plist", info);
    test::writeFile(contents_ + "/Resources/a & b", "a resource");
    fs::create_symlink("a & b", contents_ + "/Resources/link");
    test::writeFile(contents_ + "/Frameworks/libmade.dylib",
                    test::signedMachFile(test::MACH_ARM64, test::MACH_LIBRARY, "library", {}));
    const std::string list = listText();
    test::writeFile(contents_ + "/_CodeSignature/CodeResources", list);
    test::MachSignature signature;
    signature.infoDigest = digestOf(info);
    signature.sealDigest = digestOf(list);
    test::writeFile(executable(),
                    test::signedMachFile(test::MACH_ARM64, test::MACH_PROGRAM, "", signature));
  }

  static std::string listText() {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist>\n<plist version=\"1.0\">\n"
           "<dict><key>files</key><dict><key>old</key><data>AAAA</data></dict>\n"
           "<key>files2</key>\n<dict>\n<key>Resources/a &amp; b</key>\n<dict><key>hash2</key>\n"
           "<data>\n\t" +
           base64(digestOf("a resource")) +
           "\n</data></dict>\n<key>Resources/link</key>\n<dict><key>symlink</key>"
           "<string>a &amp; b</string></dict>\n<key>Resources/de.lproj/text</key><dict>"
           "<key>hash2</key><data/><key>optional</key><true/></dict>\n"
           "<key>Frameworks/libmade.dylib</key><dict><key>cdhash</key><data>AAAA</data>"
           "<key>requirement</key><string>any</string></dict>\n</dict>\n"
           "<key>rules2</key><dict><key>^.*</key><true/></dict></dict>\n</plist>\n";
  }

  std::string path() const { return folder_ / "Made.app"; }
  std::string executable() const { return contents_ + "/MacOS/Made"; }
  std::string operator/(const std::string& name) const { return contents_ + "/" + name; }
  std::vector<std::string> faults() const { return tools::readSeal(path(), executable()).faults; }

 private:
  test::TempFolder folder_;
  std::string contents_ = folder_ / "Made.app/Contents";
};

using Texts = std::vector<std::string>;

TEST(Seal, OfABundleAsItWasSignedHasNoFault) {
  const SealedBundle bundle;
  const tools::Seal seal = tools::readSeal(bundle.path(), bundle.executable());
  EXPECT_TRUE(seal.isSealed);
  EXPECT_EQ(1u, seal.signatures.size());
  EXPECT_EQ(Texts{}, seal.faults);
  EXPECT_TRUE(tools::hasSeal(bundle.path()));
}

TEST(Seal, NoticesEachKindOfChange) {
  const struct {
    const char* name;
    const char* content;  // null removes the file
    Texts faults;
  } kChanges[] = {
      {"Resources/a & b", "another", {"Contents/Resources/a & b was changed after it was sealed"}},
      {"Resources/a & b", nullptr, {"Contents/Resources/a & b is missing"}},
      {"Resources/new", "more", {"Contents/Resources/new was added after the bundle was sealed"}},
      {"MacOS/second", "more", {"Contents/MacOS/second was added after the bundle was sealed"}},
      {"Info.plist", "<plist>other</plist>", {"Info.plist is not as signed"}},
      {"Frameworks/libmade.dylib", "no code", {"Contents/Frameworks/libmade.dylib is not signed"}},
  };
  for (const auto& change : kChanges) {
    const SealedBundle bundle;
    fs::remove(bundle / change.name);
    if (change.content != nullptr) {
      test::writeFile(bundle / change.name, change.content);
    }
    EXPECT_EQ(change.faults, bundle.faults()) << change.name;
  }
}

TEST(Seal, NoticesALinkThatLeadsElsewhereOrIsAFile) {
  const SealedBundle bundle;
  fs::remove(bundle / "Resources/link");
  fs::create_symlink("/etc/passwd", bundle / "Resources/link");
  EXPECT_EQ(Texts{"Contents/Resources/link is not the sealed link"}, bundle.faults());
  fs::remove(bundle / "Resources/link");
  test::writeFile(bundle / "Resources/link", "a resource");
  EXPECT_EQ(Texts{"Contents/Resources/link is not a link as sealed"}, bundle.faults());
}

TEST(Seal, NoticesAListThatIsNotTheSignedOne) {
  const SealedBundle bundle;
  test::writeFile(bundle / "_CodeSignature/CodeResources", SealedBundle::listText() + "\n");
  EXPECT_EQ(Texts{"the list of sealed files is not the signed one"}, bundle.faults());
}

TEST(Seal, NoticesAChangeOfTheExecutable) {
  const SealedBundle bundle;
  std::string code = test::readFile(bundle.executable());
  code[5000] ^= 1;
  test::writeFile(bundle.executable(), code);
  EXPECT_EQ(Texts{"Made was changed after it was signed: 1 of its 3 pages are not as signed"},
            bundle.faults());
}

TEST(Seal, LeavesOutWhatAppleLeavesOut) {
  const SealedBundle bundle;
  test::writeFile(bundle / "PkgInfo", "APPL????");
  test::writeFile(bundle / "Resources/.DS_Store", "");
  test::writeFile(bundle / "Resources/params.lproj/locversion.plist", "");
  test::writeFile(bundle / "CodeResources", "a ticket");
  EXPECT_EQ(Texts{}, bundle.faults());
}

TEST(SealedFiles, ThatLeadOutOfTheBundleAreMissing) {
  const SealedBundle bundle;
  std::string list = SealedBundle::listText();
  list.replace(list.find("Resources/a &amp; b"), 19, "../../../etc/passwd");
  test::writeFile(bundle / "_CodeSignature/CodeResources", list);
  const Texts faults = bundle.faults();
  ASSERT_EQ(3u, faults.size());
  EXPECT_EQ("Contents/../../../etc/passwd is missing", faults[1]);
}

TEST(SealedFiles, OfATextThatBreaksOffAnywhereAreRefused) {
  const std::string whole = SealedBundle::listText();
  const size_t end = whole.rfind("</dict>");
  for (size_t size = 0; size < end; ++size) {
    EXPECT_THROW(tools::readSealedFiles(whole.substr(0, size)), tools::InputError) << size;
  }
  EXPECT_EQ(4u, tools::readSealedFiles(whole).size());
}

TEST(SealedFiles, WithoutAListAreRefused) {
  for (const char* text : {"", "bplist00", "<plist><dict/></plist>", "<plist><array/></plist>",
                           "<plist><dict><key>files2</key><string>a</string></dict></plist>",
                           "<plist><dict><string>files2</string></dict></plist>"}) {
    EXPECT_THROW(tools::readSealedFiles(text), tools::InputError) << text;
  }
}

}  // namespace
