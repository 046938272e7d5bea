#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/blackbox/pack/small_project.h"
#include "tests/support/files.h"
#include "tests/support/mach_file.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"
#include "tools/apple/code_signature.h"
#include "tools/system/program_path.h"

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::string>;
using Environment = std::map<std::string, std::string>;

const char kOffline[] = "dist/bundles/macos-arm64/offline/Small App.app";
const char kOnline[] = "dist/bundles/macos-arm64/online/Small App.app";
const char kLauncher[] = "dist/bundles/macos-arm64/launcher/Small App.app";
const char kNoTool[] = "/usr/bin:/bin";

// A project for macOS, whose application and runtime hold code.
class SignedProject : public test::SmallProject {
 public:
  explicit SignedProject(uint32_t processor = test::MACH_ARM64) {
    replace("[updater]", std::string("targets = [\"macos-") +
                             (processor == test::MACH_ARM64 ? "arm64" : "x86_64") +
                             "\"]\n\n[updater]");
    for (const char* name : {"launcher", "extractor", "lzma64"}) {
      test::writeFile(*this / ("bin/" + std::string(name)),
                      test::wholeMachFile(processor, test::MACH_PROGRAM, name), 0755);
    }
    test::writeFile(*this / "runtime/bin/java",
                    test::wholeMachFile(processor, test::MACH_PROGRAM, "java"), 0755);
    test::writeFile(*this / "runtime/lib/jspawnhelper",
                    test::wholeMachFile(processor, test::MACH_PROGRAM, "helper"), 0755);
    test::MachSignature own;
    own.identifier = "org.example.jvm";
    own.flags = 2;
    test::writeFile(*this / "runtime/lib/server/libjvm.dylib",
                    test::signedMachFile(processor, test::MACH_LIBRARY, "jvm", own));
    test::writeFile(*this / "app/lib/libown.dylib",
                    test::wholeMachFile(processor, test::MACH_LIBRARY, "own"));
  }

  // A folder with the content of an archive of the update site.
  std::string unpacked(const std::string& archive) const {
    return extracted("dist/site/macos-arm64/" + archive);
  }
};

tools::CodeSignature signatureOf(const std::string& path) {
  const auto file = tools::readMachFile(test::readFile(path));
  EXPECT_TRUE(file) << path;
  if (!file) {
    return {};
  }
  EXPECT_EQ(Texts{}, tools::faultsOf(*file)) << path;
  return file->parts[0];
}

// What the reader in tests/macos, which shares nothing with the packager's, says of a bundle.
std::string sealOf(const std::string& bundle) {
  return test::run({{"/usr/bin/env", "python3", QUORVANE_SOURCE "/tests/macos/seal.py", bundle},
                    {},
                    {},
                    "",
                    60})
      .out;
}

bool hasTool() {
  return !tools::findInPath("rcodesign", false).empty();
}

#define REQUIRE_RCODESIGN() \
  if (!hasTool())           \
  GTEST_SKIP() << "there is no rcodesign on the PATH; scripts/install-rcodesign FOLDER builds it"

// A certificate of nobody, as PEM with its key and as PKCS #12 with the password "secret word".
void makeCertificate(const SignedProject& project) {
  ASSERT_TRUE(
      test::transcriptOf(
          {{"/usr/bin/env", "rcodesign", "generate-self-signed-certificate", "--person-name",
            "Example Person", "--profile", "developer-id-application", "--pem-unified-file",
            "certificate.pem", "--p12-file", "certificate.p12", "--p12-password", "secret word"},
           {},
           {},
           project.path(),
           120})
          .succeeded());
  fs::permissions(project / "certificate.pem", fs::perms(0600));
  fs::permissions(project / "certificate.p12", fs::perms(0600));
}

const char kSelfSigned[] =
    "\n[signing.apple]\ncertificate = \"certificate.pem\"\ntimestamp = false\nteam = "
    "\"TEAM123456\"\n";

TEST(PackSign, WithACertificateSignsEveryBundle) {
  REQUIRE_RCODESIGN();
  SignedProject project;
  makeCertificate(project);
  project.text += kSelfSigned;
  const test::Transcript built = project.build();
  ASSERT_TRUE(built.succeeded());
  built.mentionsNo("certificate");
  for (const char* bundle : {kOffline, kOnline, kLauncher}) {
    EXPECT_EQ("as sealed\n", sealOf(project / bundle));
    const tools::CodeSignature signature =
        signatureOf(project / bundle + "/Contents/MacOS/Small App");
    EXPECT_TRUE(signature.hasCertificate);
    EXPECT_TRUE(signature.isHardened);
    EXPECT_EQ("TEAM123456", signature.team);
    EXPECT_NE(std::string::npos, signature.entitlements.find("cs.allow-jit"));
    EXPECT_NE(std::string::npos, signature.entitlements.find("disable-library-validation"));
    EXPECT_EQ(std::string::npos, signature.entitlements.find("dyld"));
    project.pack({"verify", bundle})
        .ends(0)
        .mentions("Example Person")
        .mentions(
            "team TEAM123456, whose certificate is not from Apple, without a time stamp; hardened "
            "runtime; the seal is whole\n");
  }
}

TEST(PackSign, WithACertificateSignsTheCodeInTheArchives) {
  REQUIRE_RCODESIGN();
  SignedProject project;
  makeCertificate(project);
  project.text += kSelfSigned;
  ASSERT_TRUE(project.build().succeeded());
  const std::string runtime = project.unpacked("Quorvane-Mac64JRE-170015-archive.p2.l2");
  for (const char* name : {"bin/java", "lib/jspawnhelper", "lib/server/libjvm.dylib"}) {
    const auto signature = signatureOf(runtime + "/Contents/Home/" + name);
    EXPECT_TRUE(signature.hasCertificate) << name;
    EXPECT_TRUE(signature.isHardened) << name;
    EXPECT_EQ(std::string(name) == "bin/java",
              signature.entitlements.find("cs.allow-jit") != std::string::npos)
        << name;
  }
  EXPECT_EQ("org.example.jvm",
            signatureOf(runtime + "/Contents/Home/lib/server/libjvm.dylib").identifier);
  const std::string application = project.unpacked("Quorvane-Small App-3-archive.p2.l2");
  const auto own = signatureOf(application + "/lib/libown.dylib");
  EXPECT_TRUE(own.hasCertificate);
  EXPECT_EQ("", own.entitlements);
  EXPECT_EQ(test::readFile(project / "app/main.jar"), test::readFile(application + "/main.jar"));
  const std::string updater = project.unpacked("Quorvane-Quorvane-5-archive.p2.l2");
  EXPECT_TRUE(signatureOf(updater + "/lzma64").hasCertificate);
  // What the project has is left alone.
  EXPECT_EQ(test::wholeMachFile(test::MACH_ARM64, test::MACH_LIBRARY, "own"),
            test::readFile(project / "app/lib/libown.dylib"));
  const test::Transcript verified = project.pack({"verify", kOffline});
  verified.ends(0);
  for (const char* fact : {"runtime: 3 of 3 programs and libraries are signed\n",
                           "updater: 1 of 1 programs and libraries are signed\n",
                           "application: 1 of 1 programs and libraries are signed\n"}) {
    verified.mentions(fact);
  }
}

TEST(PackSign, WithoutACertificateSignsWhatIsNotSignedAdHoc) {
  REQUIRE_RCODESIGN();
  SignedProject project;
  const test::Transcript built = project.build();
  ASSERT_TRUE(built.succeeded());
  built.mentions("note: [signing.apple] names no certificate");
  EXPECT_EQ("as sealed\n", sealOf(project / kOffline));
  const std::string runtime = project.unpacked("Quorvane-Mac64JRE-170015-archive.p2.l2");
  const auto java = signatureOf(runtime + "/Contents/Home/bin/java");
  EXPECT_TRUE(java.isSigned);
  EXPECT_FALSE(java.hasCertificate);
  EXPECT_EQ(test::readFile(project / "runtime/lib/server/libjvm.dylib"),
            test::readFile(runtime + "/Contents/Home/lib/server/libjvm.dylib"));
  project.pack({"verify", kOffline})
      .ends(0)
      .mentions("signed ad hoc, by nobody in particular; hardened runtime; the seal is whole\n");
}

TEST(PackSign, WithoutACertificateGivesTheSameBytesAgain) {
  REQUIRE_RCODESIGN();
  SignedProject project;
  ASSERT_TRUE(project.build().succeeded());
  const std::string first = test::manifestOf(project / "dist");
  ASSERT_TRUE(project.build({"--output", "again"}).succeeded());
  EXPECT_EQ(first, test::manifestOf(project / "again"));
}

TEST(PackSign, SignsBeforeTheDownloadsAreWritten) {
  REQUIRE_RCODESIGN();
  SignedProject project;
  ASSERT_TRUE(project.buildDownloads().succeeded());
  for (const char* download :
       {"dist/Small App-3-macos-arm64.zip", "dist/Small App-3-macos-arm64-online.zip"}) {
    project.pack({"verify", download})
        .ends(0)
        .mentions("signed ad hoc, by nobody in particular; hardened runtime; the seal is whole\n");
  }
}

// How many archives of runtimes the project's builds have kept.
size_t keptArchives(const SignedProject& project) {
  size_t count = 0;
  for (const auto& entry : fs::directory_iterator(project / "cache/quorvane")) {
    count += entry.path().filename().string().rfind("archive-", 0) == 0 ? 1 : 0;
  }
  return count;
}

TEST(PackSign, TakesAKeptRuntimeOnlyForABuildThatSignsTheSame) {
  REQUIRE_RCODESIGN();
  SignedProject project;
  ASSERT_TRUE(project.build({}, {{"PATH", kNoTool}}).succeeded());
  EXPECT_EQ(1u, keptArchives(project));
  ASSERT_TRUE(project.build().succeeded());
  EXPECT_EQ(2u, keptArchives(project));
  const std::string runtime = project.unpacked("Quorvane-Mac64JRE-170015-archive.p2.l2");
  EXPECT_TRUE(signatureOf(runtime + "/Contents/Home/bin/java").isSigned);
  ASSERT_TRUE(project.build().succeeded());
  EXPECT_EQ(2u, keptArchives(project));
}

TEST(PackSign, KeepsNoRuntimeThatIsSignedWithACertificate) {
  REQUIRE_RCODESIGN();
  SignedProject project;
  makeCertificate(project);
  project.text += kSelfSigned;
  ASSERT_TRUE(project.build().succeeded());
  const std::string cache = project / "cache/quorvane";
  EXPECT_EQ(std::vector<std::string>{},
            fs::exists(cache) ? test::namesIn(cache) : std::vector<std::string>{});
}

TEST(PackSign, TakesTheEntitlementsOfTheProject) {
  REQUIRE_RCODESIGN();
  SignedProject project;
  project.text +=
      "\n[signing.apple.entitlements]\n\"com.apple.security.device.camera\" = true\n"
      "\"com.apple.security.cs.disable-library-validation\" = false\n";
  ASSERT_TRUE(project.build().succeeded());
  const std::string text =
      signatureOf(project / kOnline + "/Contents/MacOS/Small App").entitlements;
  EXPECT_NE(std::string::npos, text.find("com.apple.security.device.camera")) << text;
  EXPECT_EQ(std::string::npos, text.find("disable-library-validation")) << text;
}

TEST(PackSign, TakesThePasswordFromAFileOrTheEnvironment) {
  REQUIRE_RCODESIGN();
  SignedProject project;
  makeCertificate(project);
  test::writeFile(project / "password", "secret word\nmore\n", 0600);
  const std::string text = project.text;
  project.text +=
      "\n[signing.apple]\ncertificate = \"certificate.p12\"\ntimestamp = false\n"
      "password_file = \"password\"\n";
  project.build().ends(0);
  EXPECT_TRUE(signatureOf(project / kOnline + "/Contents/MacOS/Small App").hasCertificate);
  project.text = text + "\n[signing.apple]\ncertificate = \"certificate.p12\"\ntimestamp = false\n";
  project.build({}, {{"QUORVANE_APPLE_PASSWORD", "secret word"}}).ends(0);
  project.build({}, {{"QUORVANE_APPLE_PASSWORD", "another"}})
      .ends(1)
      .reportsAlso("password")
      .reportsNo("another");
}

TEST(PackSign, ParamsWriteSaysThatItBreaksTheSealAndSignMendsIt) {
  REQUIRE_RCODESIGN();
  SignedProject project;
  ASSERT_TRUE(project.build().succeeded());
  project.pack({"params", "write", kOnline, "customer=Example"})
      .ends(0)
      .reportsAlso("this change breaks its seal");
  project.pack({"verify", kOnline})
      .ends(1)
      .reportsAlso(
          "Contents/Resources/AppParams.excludefromsigning was changed after it was sealed");
  EXPECT_EQ("Resources/AppParams.excludefromsigning is not as sealed\n", sealOf(project / kOnline));
  project.pack({"sign", kOnline}).ends(0);
  EXPECT_EQ("as sealed\n", sealOf(project / kOnline));
  project.pack({"verify", kOnline}).ends(0);
}

TEST(PackSign, VerifyNoticesChangedCodeInTheBundleAndInArchives) {
  REQUIRE_RCODESIGN();
  SignedProject project;
  ASSERT_TRUE(project.build().succeeded());
  const std::string executable = project / kOnline + "/Contents/MacOS/Small App";
  std::string code = test::readFile(executable);
  code[5000] ^= 1;
  test::writeFile(executable, code, 0755);
  project.pack({"verify", kOnline})
      .ends(1)
      .reportsAlso("Small App was changed after it was signed");
}

TEST(PackSign, VerifyNoticesThatACertificatesKeyDidNotSign) {
  REQUIRE_RCODESIGN();
  SignedProject project;
  makeCertificate(project);
  project.text += kSelfSigned;
  ASSERT_TRUE(project.build().succeeded());
  const std::string executable = project / kOnline + "/Contents/MacOS/Small App";
  std::string code = test::readFile(executable);
  // The last bytes of the record are those of the key's signature.
  const size_t record = code.rfind(test::big32(0xFADE0B01));
  ASSERT_NE(std::string::npos, record);
  size_t length = 0;
  for (size_t i = 4; i < 8; ++i) {
    length = length << 8 | static_cast<unsigned char>(code[record + i]);
  }
  code[record + length - 20] ^= 1;
  test::writeFile(executable, code, 0755);
  EXPECT_EQ("as sealed\n", sealOf(project / kOnline));
  project.pack({"verify", kOnline})
      .ends(1)
      .reportsAlso(
          "the signature of the executable was not made with the key of its certificate, or for "
          "other code");
}

TEST(PackSign, VerifyNoticesDamagedSignaturesInAComponent) {
  SignedProject project;
  std::string library = test::readFile(project / "runtime/lib/server/libjvm.dylib");
  library[5000] ^= 1;
  test::writeFile(project / "runtime/lib/server/libjvm.dylib", library);
  ASSERT_TRUE(project.build({}, {{"PATH", kNoTool}}).succeeded());
  project.pack({"verify", kOffline}, {{"PATH", kNoTool}})
      .ends(1)
      .reportsAlso(
          "runtime: Contents/Home/lib/server/libjvm.dylib was changed after it was signed: 1 of "
          "its 3 pages are not as signed")
      .reportsAlso(
          "runtime: Contents/Home/bin/java is not signed, and no Mac with Apple's processor runs "
          "it so");
}

TEST(PackSign, WithoutAToolSaysWhatIsNotSigned) {
  SignedProject project(test::MACH_X86_64);
  const test::Transcript built = project.build({}, {{"PATH", kNoTool}});
  ASSERT_TRUE(built.succeeded());
  built.mentions("note: nothing is signed, because there is no rcodesign on the PATH");
  project.pack({"verify", "dist/Small App-3-macos-x86_64.zip"}, {{"PATH", kNoTool}})
      .ends(0)
      .mentions("not signed\n")
      .mentions("runtime: 1 of 3 programs and libraries are signed\n");
}

TEST(PackSign, OfBundlesForLinuxSaysNothing) {
  const test::SmallProject project;
  const test::Transcript built = project.build();
  ASSERT_TRUE(built.succeeded());
  built.mentionsNo("sign");
  const std::string bundle = project / test::bundleIn("dist", "offline");
  EXPECT_TRUE(test::exists(bundle + "/Contents/Info.plist"));
  EXPECT_FALSE(test::exists(bundle + "/Contents/_CodeSignature"));
}

// A project whose certificate is some text, and a tool of the test.
class FakeTool : public SignedProject {
 public:
  explicit FakeTool(const std::string& script) {
    test::writeFile(*this / "certificate.p12", "binary", 0600);
    test::writeFile(*this / "tools/rcodesign", "#!/bin/sh\n" + script, 0755);
    text += "\n[signing.apple]\ncertificate = \"certificate.p12\"\n";
  }
  test::Transcript run(Environment environment = {}) const {
    environment["PATH"] = *this / "tools:" + kNoTool;
    return build({}, environment);
  }
};

TEST(PackSign, KeepsThePasswordOutOfArgumentsAndFromOthers) {
  const FakeTool project(
      "echo \"$@\" >\"$RECORD\"\n"
      "while [ $# -gt 0 ]; do\n"
      "  if [ \"$1\" = --p12-password-file ]; then\n"
      "    stat -c %a \"$2\" >>\"$RECORD\"; cat \"$2\" >>\"$RECORD\"\n"
      "  fi\n  shift\ndone\necho 'no such key' >&2; exit 3\n");
  const std::string record = project / "record";
  project.run({{"RECORD", record}, {"QUORVANE_APPLE_PASSWORD", "secret word"}})
      .ends(1)
      .reportsAlso("no such key");
  const Texts lines = test::linesOf(test::readFile(record));
  ASSERT_EQ(3u, lines.size());
  EXPECT_EQ(0u, lines[0].find("sign --code-signature-flags runtime")) << lines[0];
  EXPECT_EQ(std::string::npos, lines[0].find("secret")) << lines[0];
  EXPECT_EQ("600", lines[1]);
  EXPECT_EQ("secret word", lines[2]);
}

TEST(PackSign, FailsWhereTheToolSignsNothing) {
  const FakeTool project("exit 0\n");
  project.run().ends(1).reportsAlso("and the signature is not whole").leavesNo(kOffline);
}

TEST(PackSign, ShowsASigningStepWhereCodeIsSigned) {
  REQUIRE_RCODESIGN();
  SignedProject project;
  const test::Transcript built = project.build({"--verbose"});
  ASSERT_TRUE(built.succeeded());
  built.reportsAlso("[4/10] signing the code of application, updater and runtime\n")
      .reportsAlso("[10/10] writing the downloads\n");
}

TEST(PackSign, WithACertificateAndNoToolIsRefused) {
  const FakeTool project("exit 0\n");
  project.build({}, {{"PATH", kNoTool}})
      .ends(1)
      .reportsAlso("[signing.apple] certificate needs rcodesign, which is not on the PATH");
}

TEST(PackSign, RefusesACertificateThatWouldBePublished) {
  SignedProject project;
  test::writeFile(project / "app/certificate.p12", "binary", 0600);
  project.text += "\n[signing.apple]\ncertificate = \"app/certificate.p12\"\n";
  project.build().ends(1).reportsAlso("would be published with it");
}

TEST(PackSign, RefusesACertificateInTheRuntimeOfOneTarget) {
  SignedProject project;
  test::writeFile(project / "runtime/certificate.p12", "binary", 0600);
  project.replace("[runtime]", "[runtime.macos-arm64]");
  project.text += "\n[signing.apple]\ncertificate = \"runtime/certificate.p12\"\n";
  project.build().ends(1).reportsAlso("would be published with it");
}

TEST(PackSign, NamesWrongKeysAndValuesOfTheSection) {
  const struct {
    const char* lines;
    const char* error;
  } kCases[] = {
      {"[signing.apple]\npassword = \"a\"\n",
       "[signing.apple] has no key 'password'; known are certificate, entitlements, identity, key, "
       "notary_key, notary_profile, password_file, team, timestamp"},
      {"[signing.apple]\ntimestamp = \"no\"\n", "'timestamp' in [signing.apple] must be true or"},
      {"[signing.apple.entitlements]\na = 1\n",
       "'entitlements' in [signing.apple] must be a table of true, false, strings and lists"},
      {"[signing.apple]\ncertificate = \"absent.p12\"\n",
       "[signing.apple] certificate names absent.p12, which is not an existing file"},
      {"[signing.apple]\nnotary_key = \"release.key\"\n",
       "[signing.apple] has 'notary_key', which needs a 'certificate'"},
  };
  for (const auto& wrong : kCases) {
    SignedProject project;
    project.text += std::string("\n") + wrong.lines;
    project.build().ends(1).reportsAlso(wrong.error);
  }
}

}  // namespace
