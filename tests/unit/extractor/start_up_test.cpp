#include "extractor/run/start_up.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "extractor/run/run.h"
#include "launcher/installation/silent_word.h"
#include "support/text/strings.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"

namespace {

bool isSilentWith(const char* parameter, std::vector<const char*> arguments) {
  std::vector<char*> list;
  for (const char* argument : arguments) {
    list.push_back(const_cast<char*>(argument));
  }
  return isSilent(parameter, static_cast<int>(list.size()), list.data());
}

// A run whose update URLs are given, as it stands before they are ended in a slash.
ExtractorRun* runWithUrls(const char* tailUrl, const char* dynamicUrl) {
  auto* run = new ExtractorRun{};
  run->tail.requiredJavaVersion = allocCopy("");
  run->tail.updateUrl = allocCopy(tailUrl);
  run->dynamic.updateUrl = dynamicUrl == nullptr ? nullptr : allocCopy(dynamicUrl);
  test::capture([&] {
    chooseUpdateUrl(*run);
    endUpdateUrlInSlash(*run);
  });
  return run;
}

}  // namespace

TEST(IsSilent, IsTrueWhenAnArgumentEqualsTheParameterExactly) {
  EXPECT_TRUE(isSilentWith("-q", {"app", "-x", "-q"}));
}

TEST(IsSilent, ComparesTheWholeTextAndItsCase) {
  EXPECT_FALSE(isSilentWith("-q", {"app", "-Q", "-quiet", "x-q"}));
}

TEST(IsSilent, IsTrueWhenTheParameterMatchesTheProgramsOwnPath) {
  EXPECT_TRUE(isSilentWith("/Applications/a", {"/Applications/a"}));
}

TEST(IsSilent, IsFalseWithoutAParameterOrWithoutArguments) {
  EXPECT_FALSE(isSilentWith(nullptr, {"app"}));
  EXPECT_FALSE(isSilentWith("", {"app", ""}));
  EXPECT_FALSE(isSilentWith("app", {}));
}

TEST(UpdateUrl, WithoutASlashAtTheEndGainsExactlyOne) {
  EXPECT_EQ("http://127.0.0.1/u/", runWithUrls("http://127.0.0.1/u", nullptr)->updateURL);
}

TEST(UpdateUrl, WithASlashAtTheEndIsUnchanged) {
  EXPECT_EQ("http://127.0.0.1/u/", runWithUrls("http://127.0.0.1/u/", nullptr)->updateURL);
}

TEST(UpdateUrl, ThatIsEmptyStaysEmpty) {
  EXPECT_EQ("", runWithUrls("", nullptr)->updateURL);
}

TEST(UpdateUrl, OfTheTailIsHandedToTheLaunchWithItsSlash) {
  EXPECT_STREQ("http://127.0.0.1/u/", storedUpdateUrl(*runWithUrls("http://127.0.0.1/u", "x")));
}

TEST(UpdateUrl, DSelectsTheDynamicUrlAndIsItselfHandedToTheLaunch) {
  const ExtractorRun* run = runWithUrls("D", "http://127.0.0.1/d");
  EXPECT_EQ("http://127.0.0.1/d/", run->updateURL);
  EXPECT_STREQ("D", storedUpdateUrl(*run));
  EXPECT_STREQ("http://127.0.0.1/d/", dynamicUpdateUrl(*run));
}

TEST(UpdateUrl, DWithoutADynamicUrlIsTheEmptyText) {
  const ExtractorRun* run = runWithUrls("D", nullptr);
  EXPECT_EQ("", run->updateURL);
  EXPECT_STREQ("D", storedUpdateUrl(*run));
  EXPECT_EQ(nullptr, dynamicUpdateUrl(*run));
}

TEST(UpdateUrl, OfTheFullFieldLengthStillGainsItsSlash) {
  const std::string longest(4999, 'u');
  EXPECT_EQ(longest + "/", runWithUrls(longest.c_str(), nullptr)->updateURL);
}

TEST(GetPathToExe, GivesThisExecutableAndLogsIt) {
  char buffer[5000];
  int result = -1;
  const auto lines = test::logLinesOf([&] { result = getPathToExe(buffer, sizeof buffer); });
  EXPECT_EQ(0, result);
  EXPECT_NE(nullptr, strstr(buffer, "extractor_test"));
  EXPECT_EQ(std::vector<std::string>{"Path to exe is " + std::string(buffer)}, lines);
}

TEST(GetPathToExe, IsCutToTheBufferWithItsTerminator) {
  char buffer[8];
  test::capture([&] { EXPECT_EQ(0, getPathToExe(buffer, sizeof buffer)); });
  EXPECT_EQ(7u, strlen(buffer));
}

TEST(PublicKey, ThatIsEmptyLogsItsLengthAndGivesNoKey) {
  static ExtractorRun run{};
  run.tail.publicKeyHex = allocCopy("");
  const auto lines = test::logLinesOf([] { loadPublicKey(run); });
  EXPECT_EQ(std::vector<std::string>{"[Extractor] Public key length 0 (no public key)"}, lines);
  EXPECT_EQ(nullptr, run.trust.key);
}

TEST(PublicKey, ThatIsAbsentSaysSoAndGivesNoKey) {
  static ExtractorRun run{};
  const auto lines = test::logLinesOf([] { loadPublicKey(run); });
  EXPECT_EQ(std::vector<std::string>{"[Extractor] Public key empty (no public key)"}, lines);
}

TEST(PublicKey, ThatIsDamagedGivesNoKeyAndTheRunGoesOn) {
  static ExtractorRun run{};
  run.tail.publicKeyHex = allocCopy("3082010a00");
  const std::string out = test::capture([] { loadPublicKey(run); }).out;
  EXPECT_EQ(nullptr, run.trust.key);
  EXPECT_NE(std::string::npos, out.find("[Extractor] Processed public key of length 5\n"));
  EXPECT_NE(std::string::npos, out.find("[Extractor] Public Key: 00000000\n"));
}

TEST(EnforceSignatures, WithoutAUsableKeyEndsTheProcess) {
  const test::Result result = test::runInChild([] {
    static ExtractorRun run{};
    run.dynamic.requireSignature = true;
    enforceSignatures(run);
  });
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(test::containsInOrder(
      test::logLinesOf(result.out),
      {"[Extractor] Signatures are required, but there is no usable public key"}));
}
