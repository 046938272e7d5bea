#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "tests/blackbox/pack/transcript.h"
#include "tests/support/files.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_keys.h"

namespace fs = std::filesystem;

namespace {

class PackArchive : public testing::Test {
 protected:
  PackArchive() {
    publicKey_ = folder_ / "first.pub";
    test::writeFile(publicKey_, pack({"key", "show", test::keyFile("first")}).out);
  }

  static test::Transcript pack(const std::vector<std::string>& words) {
    test::Command command = test::packCommand("", words);
    command.seconds = 150;
    return test::transcriptOf(command);
  }

  static std::string outputOf(const std::vector<std::string>& words) {
    return test::run({words, {}, {}, "", 150}).out;
  }

  std::string source() const { return folder_ / "source"; }
  std::string inSource(const std::string& path) const { return source() + "/" + path; }

  // Makes a signed archive of a file and a folder.
  std::string smallArchive(const std::string& name = "small.p2") {
    test::writeFile(inSource("lib/f"), "content");
    const std::string path = folder_ / name;
    pack({"archive", "create", "--key", test::keyFile("first"), source(), path}).ends(0);
    return path;
  }

  test::TempFolder folder_;
  std::string publicKey_;
};

// Returns what is in a tree, links followed: every path with its bytes, folders with a mark.
std::map<std::string, std::string> contentOf(const std::string& folder) {
  std::map<std::string, std::string> content;
  const auto options = fs::directory_options::follow_directory_symlink;
  for (const auto& entry : fs::recursive_directory_iterator(folder, options)) {
    content[entry.path().string().substr(folder.size())] =
        entry.is_directory() ? "a folder" : test::readFile(entry.path());
  }
  return content;
}

void expectSameContent(const std::string& wanted, const std::string& found) {
  const auto left = contentOf(wanted);
  const auto right = contentOf(found);
  EXPECT_EQ(left.size(), right.size());
  for (const auto& [path, bytes] : left) {
    const auto other = right.find(path);
    ASSERT_NE(right.end(), other) << path;
    EXPECT_TRUE(bytes == other->second) << path;
  }
}

TEST_F(PackArchive, MakesListsVerifiesAndExtracts) {
  const std::string archive = smallArchive();
  pack({"archive", "list", archive})
      .prints(
          "folder             0  lib\n"
          "file               7  lib/f\n"
          "signed with 2048 bits over 23 bytes\n");
  pack({"archive", "verify", "--public-key", publicKey_, archive})
      .prints(archive + ": 2 entries, the signature is valid\n");
  pack({"archive", "extract", "--public-key", publicKey_, archive, folder_ / "out"}).ends(0);
  expectSameContent(source(), folder_ / "out");
  EXPECT_TRUE(test::exists(archive));
}

TEST_F(PackArchive, WorksOnACompressedArchiveAsOnAPlainOne) {
  const std::string archive = smallArchive("small.p2.l2");
  pack({"archive", "list", archive}).mentions("lib/f");
  pack({"archive", "verify", "--public-key", publicKey_, archive}).ends(0);
  pack({"archive", "extract", "--public-key", publicKey_, archive, folder_ / "out"}).ends(0);
  expectSameContent(source(), folder_ / "out");
}

TEST_F(PackArchive, MakesTheSameBytesAgain) {
  const std::string first = test::readFile(smallArchive("a.p2.l2"));
  EXPECT_EQ(first, test::readFile(smallArchive("b.p2.l2")));
}

TEST_F(PackArchive, ExtractsAnUnsignedArchiveOnlyWithoutAKey) {
  test::writeFile(inSource("f"), "content");
  const std::string archive = folder_ / "unsigned.p2";
  pack({"archive", "create", source(), archive}).ends(0);
  pack({"archive", "list", archive}).prints("file               7  f\nnot signed\n");
  pack({"archive", "extract", archive, folder_ / "out"}).ends(0);
  expectSameContent(source(), folder_ / "out");
  pack({"archive", "extract", "--public-key", publicKey_, archive, folder_ / "no"})
      .fails(archive + " has no signature that is valid under this key; nothing was kept")
      .prints("");
  EXPECT_FALSE(test::exists(folder_ / "no"));
  pack({"archive", "verify", "--public-key", publicKey_, archive})
      .fails(archive + " is not signed; make it with --key")
      .prints("");
}

TEST_F(PackArchive, RefusesASignatureOfAnotherKey) {
  const std::string archive = smallArchive("small.p2.l2");
  const std::string other = folder_ / "second.pub";
  test::writeFile(other, pack({"key", "show", test::keyFile("second")}).out);
  pack({"archive", "verify", "--public-key", other, archive})
      .fails(archive + " was changed after it was signed, or signed with another key")
      .prints("");
  pack({"archive", "extract", "--public-key", other, archive, folder_ / "out"})
      .fails(archive + " has no signature that is valid under this key; nothing was kept")
      .prints("");
}

TEST_F(PackArchive, AsksForTheKeyOfASignedArchive) {
  const std::string archive = smallArchive();
  pack({"archive", "extract", archive, folder_ / "out"})
      .fails(archive + " is signed; name its key with --public-key")
      .prints("");
}

TEST_F(PackArchive, DoesNotExtractIntoAFolderThatHoldsSomething) {
  const std::string archive = smallArchive();
  pack({"archive", "extract", "--public-key", publicKey_, archive, source()})
      .fails(source() + " is not empty; name a new folder")
      .prints("");
  EXPECT_EQ("content", test::readFile(inSource("lib/f")));
}

TEST_F(PackArchive, ShowsTheEndOfTheLogWhenTheProductEnds) {
  test::writeFile(inSource("a.jar"), "x");
  test::writeFile(folder_ / "packer", "#!/bin/sh\ncp \"$1\" \"$2\"\n", 0755);
  const std::string archive = folder_ / "packed.p2";
  pack({"archive", "create", "--pack200", "*.jar", "--pack200-tool", folder_ / "packer", source(),
        archive})
      .ends(0);
  pack({"archive", "extract", archive, folder_ / "out"})
      .ends(1)
      .reportsAlso("unpack200 (" + folder_ / "out" + "/a.jar)")
      .leavesNo("out");
}

TEST_F(PackArchive, NamesWhatIsWrongWithItsInput) {
  test::writeFile(inSource("a.jar"), "x");
  test::writeFile(folder_ / "junk.p2", "junk");
  const std::string out = folder_ / "out.p2";
  pack({"archive", "create", folder_ / "missing", out})
      .fails(folder_ / "missing" + " is not a folder")
      .prints("");
  pack({"archive", "list", folder_ / "junk.p2"})
      .fails(folder_ / "junk.p2" +
             " is damaged at byte 0: it ends inside an entry's type; make it again")
      .prints("");
  pack({"archive", "list", folder_ / "missing.p2"})
      .fails(folder_ / "missing.p2" + " cannot be read: No such file or directory")
      .prints("");
  pack({"archive", "verify", "--public-key", folder_ / "junk.p2", out})
      .fails(folder_ / "junk.p2" +
             " contains no public key; expected the text that 'quorvane-pack key show' prints")
      .prints("");
  EXPECT_FALSE(test::exists(out));
}

TEST_F(PackArchive, UsedWronglyEndsWith2) {
  pack({"archive"}).ends(2);
  pack({"archive", "create", "only-one"}).ends(2);
  pack({"archive", "verify", "a.p2"}).ends(2);
  pack({"archive", "burn"}).ends(2);
}

TEST_F(PackArchive, CreatedWithWordsThatCannotBeMeantEndsWith2) {
  const auto expectUsage = [&](std::vector<std::string> words, const std::string& message) {
    words.insert(words.begin(), {"archive", "create"});
    pack(words).isMisused(message + "\n");
  };
  test::writeFile(inSource("a.jar"), "x");
  const std::string out = folder_ / "out.p2";
  expectUsage({"--pack200", "*.jar", source(), out},
              "--pack200 needs a packing program; name one with --pack200-tool");
  expectUsage({"--add", "x", source(), out}, "--add x cannot be read; expected NAME=FILE");
  expectUsage({"--special", "note", source(), out},
              "--special note cannot be read; expected NAME=FILE");
  EXPECT_FALSE(test::exists(out));
  const std::string key = folder_ / "my.key";
  test::writeFile(key, "mine");
  for (const std::string& name : {key, folder_ / "out.l2", folder_ / "q2.toml"}) {
    expectUsage({source(), name}, name + " is not an archive name; expected NAME.p2 or NAME.p2.l2");
  }
  EXPECT_EQ("mine", test::readFile(key));
}

TEST_F(PackArchive, DoesNotPackThePrivateKey) {
  const std::string key = inSource("lib/k.key");
  test::writeFile(key, test::readFile(test::keyFile("first")), 0600);
  const std::string out = folder_ / "out.p2";
  pack({"archive", "create", "--key", key, source(), out})
      .fails("--key names " + key + ", which is inside " + source() +
             " and would be published with it; move it elsewhere")
      .prints("");
  fs::rename(key, folder_ / "k.key");
  pack({"archive", "create", "--key", folder_ / "k.key", "--add", "x=" + (folder_ / "k.key"),
        source(), out})
      .fails("the entry x is the private key and would be published")
      .prints("");
  EXPECT_FALSE(test::exists(out));
}

TEST_F(PackArchive, SignedWithAKeyThatOthersMayReadSaysSo) {
  const std::string key = folder_ / "k.key";
  test::writeFile(inSource("f"), "x");
  test::writeFile(key, test::readFile(test::keyFile("first")), 0644);
  pack({"archive", "create", "--key", key, source(), folder_ / "out.p2"})
      .ends(0)
      .reports("quorvane-pack: other users can read " + key + "; run 'chmod 600' on it\n");
}

TEST_F(PackArchive, HelpGivesAnExample) {
  for (const std::string command : {"create", "list", "verify", "extract"}) {
    pack({"archive", command, "--help"}).ends(0).mentions("Example:\n  quorvane-pack");
  }
}

// Empty files and folders, odd names, long paths, every byte value, names that the extraction
// treats in special ways.
void makeEdgeCases(const std::string& folder) {
  std::string all(256, '\0');
  for (int i = 0; i < 256; ++i) {
    all[static_cast<size_t>(i)] = static_cast<char>(i);
  }
  test::writeFile(folder + "/every byte", all);
  test::writeFile(folder + "/empty", "");
  fs::create_directories(folder + "/empty folder/in another");
  test::writeFile(folder + "/.hidden", "h");
  test::writeFile(folder + "/.a", "short dot name");
  test::writeFile(folder + "/...", "three dots");
  test::writeFile(folder + "/..a/b..", "dots");
  test::writeFile(folder + "/quote\"'$(date)`date`;&|<>*?[]{}!#~\\", "shell");
  test::writeFile(folder + "/new\nline\ttab", "control");
  test::writeFile(folder + "/\xC3\xA9t\xC3\xA9/\xE2\x82\xAC", "UTF-8");
  test::writeFile(folder + "/\xFF\xFE", "no UTF-8");
  test::writeFile(folder + "/%s%n%d", "format");
  test::writeFile(folder + "/kept.l2", "not compressed");
  test::writeFile(folder + "/kept.p2", "not an archive");
  test::writeFile(folder + "/qvArcSpBlock_Other", "special");
  test::writeFile(folder + "/sub/qvArcSpBlock_DigitalSignature1", "no signature here");
  test::writeFile(folder + "/1", "1");
  test::writeFile(folder + "/big", std::string(3000000, 'b'));
  std::string deep = folder;
  for (int i = 0; i < 100; ++i) {
    deep += "/deep";
  }
  test::writeFile(deep + "/f", "deep");
  const std::string name(250, 'n');
  test::writeFile(folder + "/" + name + "/" + name + "/" + name + "/" + name, "long");
}

// Real launchers, libraries, settings, licences and manual pages of a Java runtime, without the few
// large ones.
void copyRuntime(const std::string& folder) {
  const std::string script =
      "cd '" QUORVANE_JDK "' && mkdir '" + folder +
      "' && tar -chf - --exclude=./jmods --exclude=./lib/modules --exclude=./lib/server "
      "--exclude=src.zip --exclude=ct.sym . | tar -xf - -C '" +
      folder + "'";
  test::run({{"/bin/sh", "-c", script}, {}, {}, "", 60});
}

TEST_F(PackArchive, TakesARuntimeAndATreeOfEdgeCasesThereAndBack) {
  copyRuntime(source());
  ASSERT_GT(contentOf(source()).size(), 200u);
  makeEdgeCases(inSource("edge cases"));
  const std::string archive = folder_ / "runtime.p2.l2";
  pack({"archive", "create", "--key", test::keyFile("first"), source(), archive}).ends(0);
  pack({"archive", "verify", "--public-key", publicKey_, archive}).ends(0);
  pack({"archive", "extract", "--public-key", publicKey_, archive, folder_ / "out"}).ends(0);
  expectSameContent(source(), folder_ / "out");
  EXPECT_EQ(0755u, test::modeOf(folder_ / "out/bin/java"));
  EXPECT_EQ(0777u, test::modeOf(folder_ / "out/bin"));
}

TEST_F(PackArchive, TakesPackedJarsSpecialBlocksAndNestedArchivesThereAndBack) {
  const std::string inner = smallArchive("inner.p2");
  fs::copy(QUORVANE_PACK200_SAMPLE "/sample.jar", inSource("lib/a.jar"));
  const std::string archive = folder_ / "outer.p2";
  const std::string tools = QUORVANE_PACK200_TOOLS;
  pack({"archive", "create", "--key", test::keyFile("first"), "--pack200", "lib/*.jar",
        "--pack200-tool", tools + "/pack200/bin/pack200", "--special", "Note=" + inSource("lib/f"),
        "--add", "nested/inner.p2=" + inner, source(), archive})
      .ends(0);
  const test::Transcript list = pack({"archive", "list", archive});
  for (const char* line :
       {"pack200 ", "special            7  qvArcSpBlock_Note", "nested/inner.p2"}) {
    list.mentions(line);
  }
  pack({"archive", "extract", "--public-key", publicKey_, "--unpack200",
        tools + "/unpack200/bin/unpack200", archive, folder_ / "out"})
      .ends(0);
  EXPECT_EQ("content", test::readFile(folder_ / "out/qvArcSpBlock_Note"));
  EXPECT_EQ(test::readFile(inner), test::readFile(folder_ / "out/nested/inner.p2"));
  const std::string java = QUORVANE_JDK "/bin/java";
  const std::string printed = outputOf({java, "-cp", folder_ / "out/lib/a.jar", "app.Main"});
  EXPECT_EQ(outputOf({java, "-cp", inSource("lib/a.jar"), "app.Main"}), printed);
  EXPECT_NE(std::string::npos, printed.find("GREEN 2"));
}

}  // namespace
