#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

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

  static test::Result run(const std::vector<std::string>& arguments) {
    test::Command command;
    command.arguments = arguments;
    command.seconds = 150;
    return test::run(command);
  }

  static test::Result pack(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), QUORVANE_BIN "/quorvane-pack");
    return run(arguments);
  }

  static void expectDone(const test::Result& result) {
    EXPECT_EQ(0, result.status) << result.out << result.err;
  }

  static void expectError(const test::Result& result, const std::string& message) {
    EXPECT_EQ(1, result.status);
    EXPECT_EQ("quorvane-pack: " + message + "\n", result.err);
    EXPECT_EQ("", result.out);
  }

  std::string source() const { return folder_ / "source"; }
  std::string inSource(const std::string& path) const { return source() + "/" + path; }

  // Makes a signed archive of a file and a folder.
  std::string smallArchive(const std::string& name = "small.p2") {
    test::writeFile(inSource("lib/f"), "content");
    const std::string path = folder_ / name;
    expectDone(pack({"archive", "create", "--key", test::keyFile("first"), source(), path}));
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
  const test::Result list = pack({"archive", "list", archive});
  EXPECT_EQ(
      "folder             0  lib\n"
      "file               7  lib/f\n"
      "signed with 2048 bits over 23 bytes\n",
      list.out);
  EXPECT_EQ(archive + ": 2 entries, the signature is valid\n",
            pack({"archive", "verify", "--public-key", publicKey_, archive}).out);
  expectDone(pack({"archive", "extract", "--public-key", publicKey_, archive, folder_ / "out"}));
  expectSameContent(source(), folder_ / "out");
  EXPECT_TRUE(test::exists(archive));
}

TEST_F(PackArchive, WorksOnACompressedArchiveAsOnAPlainOne) {
  const std::string archive = smallArchive("small.p2.l2");
  EXPECT_NE(std::string::npos, pack({"archive", "list", archive}).out.find("lib/f"));
  expectDone(pack({"archive", "verify", "--public-key", publicKey_, archive}));
  expectDone(pack({"archive", "extract", "--public-key", publicKey_, archive, folder_ / "out"}));
  expectSameContent(source(), folder_ / "out");
}

TEST_F(PackArchive, MakesTheSameBytesAgain) {
  const std::string first = test::readFile(smallArchive("a.p2.l2"));
  EXPECT_EQ(first, test::readFile(smallArchive("b.p2.l2")));
}

TEST_F(PackArchive, ExtractsAnUnsignedArchiveOnlyWithoutAKey) {
  test::writeFile(inSource("f"), "content");
  const std::string archive = folder_ / "unsigned.p2";
  expectDone(pack({"archive", "create", source(), archive}));
  EXPECT_EQ("file               7  f\nnot signed\n", pack({"archive", "list", archive}).out);
  expectDone(pack({"archive", "extract", archive, folder_ / "out"}));
  expectSameContent(source(), folder_ / "out");
  expectError(pack({"archive", "extract", "--public-key", publicKey_, archive, folder_ / "no"}),
              archive + " has no signature that is valid under this key; nothing was kept");
  EXPECT_FALSE(test::exists(folder_ / "no"));
  expectError(pack({"archive", "verify", "--public-key", publicKey_, archive}),
              archive + " is not signed; make it with --key");
}

TEST_F(PackArchive, RefusesASignatureOfAnotherKey) {
  const std::string archive = smallArchive("small.p2.l2");
  const std::string other = folder_ / "second.pub";
  test::writeFile(other, pack({"key", "show", test::keyFile("second")}).out);
  expectError(pack({"archive", "verify", "--public-key", other, archive}),
              archive + " was changed after it was signed, or signed with another key");
  expectError(pack({"archive", "extract", "--public-key", other, archive, folder_ / "out"}),
              archive + " has no signature that is valid under this key; nothing was kept");
}

TEST_F(PackArchive, AsksForTheKeyOfASignedArchive) {
  const std::string archive = smallArchive();
  expectError(pack({"archive", "extract", archive, folder_ / "out"}),
              archive + " is signed; name its key with --public-key");
}

TEST_F(PackArchive, DoesNotExtractIntoAFolderThatHoldsSomething) {
  const std::string archive = smallArchive();
  expectError(pack({"archive", "extract", "--public-key", publicKey_, archive, source()}),
              source() + " is not empty; name a new folder");
  EXPECT_EQ("content", test::readFile(inSource("lib/f")));
}

TEST_F(PackArchive, ShowsTheEndOfTheLogWhenTheProductEnds) {
  test::writeFile(inSource("a.jar"), "x");
  test::writeFile(folder_ / "packer", "#!/bin/sh\ncp \"$1\" \"$2\"\n", 0755);
  const std::string archive = folder_ / "packed.p2";
  expectDone(pack({"archive", "create", "--pack200", "*.jar", "--pack200-tool", folder_ / "packer",
                   source(), archive}));
  const test::Result result = pack({"archive", "extract", archive, folder_ / "out"});
  EXPECT_EQ(1, result.status);
  EXPECT_NE(std::string::npos, result.err.find("unpack200 (" + folder_ / "out" + "/a.jar)"));
  EXPECT_FALSE(test::exists(folder_ / "out"));
}

TEST_F(PackArchive, NamesWhatIsWrongWithItsInput) {
  test::writeFile(inSource("a.jar"), "x");
  test::writeFile(folder_ / "junk.p2", "junk");
  const std::string out = folder_ / "out.p2";
  expectError(pack({"archive", "create", folder_ / "missing", out}),
              folder_ / "missing" + " is not a folder");
  expectError(
      pack({"archive", "list", folder_ / "junk.p2"}),
      folder_ / "junk.p2" + " is damaged at byte 0: it ends inside an entry's type; make it again");
  expectError(pack({"archive", "list", folder_ / "missing.p2"}),
              folder_ / "missing.p2" + " cannot be read: No such file or directory");
  expectError(
      pack({"archive", "verify", "--public-key", folder_ / "junk.p2", out}),
      folder_ / "junk.p2" +
          " contains no public key; expected the text that 'quorvane-pack key show' prints");
  EXPECT_FALSE(test::exists(out));
}

TEST_F(PackArchive, UsedWronglyEndsWith2) {
  EXPECT_EQ(2, pack({"archive"}).status);
  EXPECT_EQ(2, pack({"archive", "create", "only-one"}).status);
  EXPECT_EQ(2, pack({"archive", "verify", "a.p2"}).status);
  EXPECT_EQ(2, pack({"archive", "burn"}).status);
}

TEST_F(PackArchive, CreatedWithWordsThatCannotBeMeantEndsWith2) {
  const auto expectUsage = [&](std::vector<std::string> words, const std::string& message) {
    words.insert(words.begin(), {"archive", "create"});
    const test::Result result = pack(words);
    EXPECT_EQ(2, result.status);
    EXPECT_EQ(0u, result.err.find(message + "\n")) << result.err;
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
  expectError(pack({"archive", "create", "--key", key, source(), out}),
              "--key names " + key + ", which is inside " + source() +
                  " and would be published with it; move it elsewhere");
  fs::rename(key, folder_ / "k.key");
  expectError(pack({"archive", "create", "--key", folder_ / "k.key", "--add",
                    "x=" + (folder_ / "k.key"), source(), out}),
              "the entry x is the private key and would be published");
  EXPECT_FALSE(test::exists(out));
}

TEST_F(PackArchive, SignedWithAKeyThatOthersMayReadSaysSo) {
  const std::string key = folder_ / "k.key";
  test::writeFile(inSource("f"), "x");
  test::writeFile(key, test::readFile(test::keyFile("first")), 0644);
  const test::Result result =
      pack({"archive", "create", "--key", key, source(), folder_ / "out.p2"});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ("quorvane-pack: other users can read " + key + "; run 'chmod 600' on it\n", result.err);
}

TEST_F(PackArchive, HelpGivesAnExample) {
  for (const std::string command : {"create", "list", "verify", "extract"}) {
    const test::Result help = pack({"archive", command, "--help"});
    EXPECT_EQ(0, help.status);
    EXPECT_NE(std::string::npos, help.out.find("Example:\n  quorvane-pack")) << command;
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
  expectDone(pack({"archive", "create", "--key", test::keyFile("first"), source(), archive}));
  expectDone(pack({"archive", "verify", "--public-key", publicKey_, archive}));
  expectDone(pack({"archive", "extract", "--public-key", publicKey_, archive, folder_ / "out"}));
  expectSameContent(source(), folder_ / "out");
  EXPECT_EQ(0755u, test::modeOf(folder_ / "out/bin/java"));
  EXPECT_EQ(0777u, test::modeOf(folder_ / "out/bin"));
}

TEST_F(PackArchive, TakesPackedJarsSpecialBlocksAndNestedArchivesThereAndBack) {
  const std::string inner = smallArchive("inner.p2");
  fs::copy(QUORVANE_PACK200_SAMPLE "/sample.jar", inSource("lib/a.jar"));
  const std::string archive = folder_ / "outer.p2";
  const std::string tools = QUORVANE_PACK200_TOOLS;
  expectDone(
      pack({"archive", "create", "--key", test::keyFile("first"), "--pack200", "lib/*.jar",
            "--pack200-tool", tools + "/pack200/bin/pack200", "--special",
            "Note=" + inSource("lib/f"), "--add", "nested/inner.p2=" + inner, source(), archive}));
  const test::Result list = pack({"archive", "list", archive});
  for (const char* line :
       {"pack200 ", "special            7  qvArcSpBlock_Note", "nested/inner.p2"}) {
    EXPECT_NE(std::string::npos, list.out.find(line)) << line;
  }
  expectDone(pack({"archive", "extract", "--public-key", publicKey_, "--unpack200",
                   tools + "/unpack200/bin/unpack200", archive, folder_ / "out"}));
  EXPECT_EQ("content", test::readFile(folder_ / "out/qvArcSpBlock_Note"));
  EXPECT_EQ(test::readFile(inner), test::readFile(folder_ / "out/nested/inner.p2"));
  const std::string java = QUORVANE_JDK "/bin/java";
  const test::Result unpacked = run({java, "-cp", folder_ / "out/lib/a.jar", "app.Main"});
  EXPECT_EQ(run({java, "-cp", inSource("lib/a.jar"), "app.Main"}).out, unpacked.out);
  EXPECT_NE(std::string::npos, unpacked.out.find("GREEN 2"));
}

}  // namespace
