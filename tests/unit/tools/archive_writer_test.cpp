#include "tools/formats/archive_writer.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <functional>
#include <memory>

#include "archive/archive.h"
#include "crypto/mixed_hash.h"
#include "crypto/tomcrypt.h"
#include "platform/process_end.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_keys.h"
#include "tools/formats/archive_reader.h"
#include "tools/formats/archive_records.h"
#include "tools/formats/lzma.h"
#include "tools/system/input_error.h"

namespace fs = std::filesystem;
using test::field;

class ArchiveWriter : public testing::Test {
 protected:
  ArchiveWriter() {
    fs::create_directory(source());
    content_.folder = source();
  }

  std::string written() {
    tools::writeArchive(content_, archive(), nullptr);
    return test::readFile(archive());
  }

  void expectError(const std::string& wanted, const tools::SigningKey* key = nullptr) {
    try {
      tools::writeArchive(content_, archive(), key);
      FAIL() << "no error, expected " << wanted;
    } catch (const tools::InputError& error) {
      EXPECT_EQ(wanted, error.what());
    }
    EXPECT_FALSE(test::exists(archive()));
    for (const std::string& name : test::namesIn(folder_.path())) {
      EXPECT_EQ(std::string::npos, name.find(".part")) << name;
    }
  }

  std::string source() const { return folder_ / "source"; }
  std::string inSource(const std::string& path) const { return source() + "/" + path; }
  std::string archive() const { return folder_ / "out.p2"; }

  test::TempFolder folder_;
  tools::ArchiveContent content_;
};

TEST_F(ArchiveWriter, WritesEntriesSortedByTheBytesOfTheirPaths) {
  test::writeFile(inSource("b"), "B");
  test::writeFile(inSource("a/z"), "Z");
  test::writeFile(inSource("a-b"), "");
  test::writeFile(inSource("B1"), "upper");
  const std::string wanted = field("0") + field("B1") + field("5") + "upper" +  //
                             field("1") + field("a") +                          //
                             field("0") + field("a-b") + field("0") +           //
                             field("0") + field("a/z") + field("1") + "Z" +     //
                             field("0") + field("b") + field("1") + "B";
  EXPECT_EQ(wanted, written());
}

TEST_F(ArchiveWriter, WritesNothingForAnEmptyFolder) {
  EXPECT_EQ("", written());
}

TEST_F(ArchiveWriter, WritesTheSameBytesWhateverTheModesTimesAndPlace) {
  test::writeFile(inSource("lib/f"), "content", 0600);
  const std::string first = written();
  fs::rename(source(), folder_ / "elsewhere");
  content_.folder = folder_ / "elsewhere";
  fs::permissions(folder_ / "elsewhere/lib/f", fs::perms::all);
  fs::last_write_time(folder_ / "elsewhere/lib/f", fs::file_time_type::min());
  EXPECT_EQ(first, written());
}

TEST_F(ArchiveWriter, StoresALinkAsACopyOfWhatItPointsTo) {
  test::writeFile(folder_ / "outside/f", "content");
  fs::create_symlink("../outside/f", inSource("link"));
  fs::create_symlink("../outside", inSource("linked"));
  const std::string wanted = field("0") + field("link") + field("7") + "content" + field("1") +
                             field("linked") + field("0") + field("linked/f") + field("7") +
                             "content";
  EXPECT_EQ(wanted, written());
}

TEST_F(ArchiveWriter, RefusesALinkToNothing) {
  fs::create_symlink("missing", inSource("link"));
  expectError(inSource("link") + " is a broken link; remove it");
}

TEST_F(ArchiveWriter, RefusesALinkToAFolderThatHoldsIt) {
  fs::create_directory(inSource("a"));
  fs::create_symlink("..", inSource("a/up"));
  expectError(inSource("a/up") + " is a link to a folder that contains it; remove it");
}

TEST_F(ArchiveWriter, RefusesWhatIsNeitherFileNorFolder) {
  ASSERT_EQ(0, mkfifo(inSource("pipe").c_str(), 0600));
  expectError(inSource("pipe") + " is neither a file nor a folder; remove it");
}

TEST_F(ArchiveWriter, RefusesAFolderThatIsNone) {
  content_.folder = folder_ / "missing";
  expectError(folder_ / "missing is not a folder");
}

TEST_F(ArchiveWriter, WhoseHashCannotBeSetUpSaysSo) {
  const test::Result result = test::runInChild([this] {
    unregister_hash(&mixedDescriptor);
    ltc_hash_descriptor filler = sha256_desc;
    do {
      ++filler.ID;
    } while (register_hash(&filler) != -1);
    expectError("the archive's hash cannot be set up");
    endProcess(HasFailure() ? 1 : 0);
  });
  EXPECT_EQ(0, result.status) << result.out;
}

TEST_F(ArchiveWriter, WhoseHashFailsLaterSaysSo) {
  test::writeFile(inSource("f"), "content");
  const auto key = tools::SigningKey::read(test::keyFile("first"));
  const auto expectErrorWith = [&](const ltc_hash_descriptor& failing, const char* error) {
    const test::Result result = test::runInChild([&] {
      unregister_hash(&mixedDescriptor);
      register_hash(&failing);
      expectError(error, &key);
      endProcess(HasFailure() ? 1 : 0);
    });
    EXPECT_EQ(0, result.status) << result.out;
  };
  ltc_hash_descriptor failing = mixedDescriptor;
  failing.process = [](Hash_state*, const unsigned char*, unsigned long) {
    return static_cast<int>(CRYPT_ERROR);
  };
  expectErrorWith(failing, "the archive's hash cannot be continued");
  failing = mixedDescriptor;
  failing.done = [](Hash_state*, unsigned char*) { return static_cast<int>(CRYPT_ERROR); };
  expectErrorWith(failing, "the archive's hash cannot be finished");
}

TEST_F(ArchiveWriter, RefusesAPathThatIsTooLongToBeExtracted) {
  const std::string name(250, 'n');
  const std::string path = name + "/" + name + "/" + name + "/" + name;
  test::writeFile(inSource(path + "/" + std::string(18, 'n')), "");
  EXPECT_NO_THROW(written());
  fs::remove(archive());
  const std::string longer = path + "/" + std::string(19, 'n');
  test::writeFile(inSource(longer), "");
  expectError("the entry " + longer + " would not be extracted: path is too long");
}

TEST_F(ArchiveWriter, RefusesAFileNamedLikeTheSignature) {
  test::writeFile(inSource("qvArcSpBlock_DigitalSignature1"), "");
  expectError(
      "the name qvArcSpBlock_DigitalSignature1 is reserved for the signature; rename the file");
}

TEST_F(ArchiveWriter, RefusesTwoEntriesOfOnePath) {
  test::writeFile(inSource("f"), "");
  content_.files = {{"f", inSource("f")}};
  expectError("two entries have the path f; rename one");
}

TEST_F(ArchiveWriter, RefusesPathsThatDifferByNothingButCase) {
  test::writeFile(inSource("lib/x"), "");
  content_.files = {{"Lib", inSource("lib/x")}};
  expectError(
      "the paths Lib and lib differ only in case, which most macOS volumes ignore; "
      "rename one");
}

TEST_F(ArchiveWriter, RefusesAnAddedFileThatIsMissing) {
  content_.files = {{"f", folder_ / "missing"}};
  expectError(folder_ / "missing cannot be read: No such file or directory");
}

TEST_F(ArchiveWriter, RefusesAnAddedPathThatLeadsOut) {
  test::writeFile(folder_ / "f", "");
  content_.files = {{"../f", folder_ / "f"}};
  expectError("the entry ../f would not be extracted: path leads out of the destination");
}

TEST_F(ArchiveWriter, RefusesToWriteIntoTheFolderItArchives) {
  try {
    tools::writeArchive(content_, inSource("out.p2"), nullptr);
    FAIL();
  } catch (const tools::InputError& error) {
    EXPECT_EQ(inSource("out.p2") +
                  " is inside the folder that it is made from; choose a place outside " + source(),
              std::string(error.what()));
  }
  tools::writeArchive(content_, source() + ".p2", nullptr);
}

TEST_F(ArchiveWriter, KeepsAnOlderArchiveWhenItFails) {
  test::writeFile(archive(), "older");
  fs::create_symlink("missing", inSource("link"));
  EXPECT_THROW(written(), tools::InputError);
  EXPECT_EQ("older", test::readFile(archive()));
}

TEST_F(ArchiveWriter, CompressesAnArchiveWhoseNameSaysSo) {
  test::writeFile(inSource("f"), "content");
  const std::string plain = written();
  tools::writeArchive(content_, archive() + ".l2", nullptr);
  tools::lzmaDecompress(archive() + ".l2", folder_ / "again");
  EXPECT_EQ(plain, test::readFile(folder_ / "again"));
}

TEST_F(ArchiveWriter, PacksWhatAPatternMatches) {
  for (const char* path : {"a.jar", "lib/b.jar", "lib/deep/c.jar", "lib/d.txt"}) {
    test::writeFile(inSource(path), path);
  }
  test::writeFile(folder_ / "packer", "#!/bin/sh\n{ printf P; cat \"$1\"; } > \"$2\"\n", 0755);
  content_.pack200Tool = folder_ / "packer";
  const auto packed = [&](const std::string& pattern) {
    content_.pack200 = {pattern};
    written();
    std::string paths;
    for (const auto& entry : tools::readArchive(archive(), "it").entries) {
      paths += entry.kind == tools::EntryKind::pack200 ? entry.path + " " : "";
    }
    return paths;
  };
  EXPECT_EQ("a.jar lib/b.jar lib/deep/c.jar ", packed("*.jar"));
  EXPECT_EQ("lib/b.jar ", packed("lib/*.jar"));
  EXPECT_EQ("lib/b.jar lib/d.txt ", packed("lib/*"));
  EXPECT_NE(std::string::npos,
            test::readFile(archive()).find(field("2") + field("lib/b.jar") + field("10") + "Plib"));
}

TEST_F(ArchiveWriter, RefusesAPatternThatMatchesNothing) {
  test::writeFile(inSource("f"), "");
  content_.pack200 = {"*.jar"};
  expectError("the pack200 pattern *.jar matches no file; correct or remove it");
}

TEST_F(ArchiveWriter, RefusesAPackerThatFailsOrIsMissing) {
  test::writeFile(inSource("a.jar"), "");
  content_.pack200 = {"*.jar"};
  content_.pack200Tool = "/bin/false";
  expectError("/bin/false failed; its own message says why");
  content_.pack200Tool = folder_ / "missing";
  expectError(folder_ / "missing cannot be started: No such file or directory");
}

TEST_F(ArchiveWriter, SignsWhatThePackagersAndTheProductsCheckAccept) {
  test::writeFile(inSource("f"), "content");
  const auto key = tools::SigningKey::read(test::keyFile("first"));
  tools::writeArchive(content_, archive(), &key);
  const std::string bytes = test::readFile(archive());
  const tools::ArchiveListing listing = tools::readArchive(archive(), "it");
  EXPECT_TRUE(listing.isSigned);
  EXPECT_TRUE(listing.isWrittenForm);
  EXPECT_EQ(listing.recordOffset, listing.signedLength);
  const std::string der = key.publicKeyDer();
  const auto* start = reinterpret_cast<const unsigned char*>(der.data());
  const std::unique_ptr<Rsa_key, decltype(&freePublicKey)> publicKey(
      loadDEREncodedPublicKey(start, static_cast<int>(der.size())), freePublicKey);
  EXPECT_NO_THROW(tools::checkSignature(archive(), "it", listing, publicKey.get()));
  fs::create_directory(folder_ / "dest");
  test::logLinesOf([&] {
    extractArchive(nullptr, archive().c_str(), (folder_ / "dest").c_str(), {publicKey.get(), true});
  });
  EXPECT_EQ("content", test::readFile(folder_ / "dest/f"));
  tools::writeArchive(content_, archive(), &key);
  EXPECT_EQ(bytes, test::readFile(archive()));
}
