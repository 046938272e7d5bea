#include <gtest/gtest.h>

#include <iterator>
#include <numeric>
#include <string>

#include "archive/archive.h"
#include "tests/support/files.h"
#include "tests/support/signature_record.h"
#include "tests/unit/archive/archive_fixture.h"
#include "tests/unit/archive/signed_archive.h"
#include "tests/unit/archive/trials.h"

using test::Outcome;

// How many of the changes of bit 0 to 7 are accepted as unsigned, how many are verified all the
// same, and how many truncations are accepted as unsigned.
static const int kFlipsAccepted[] = {32, 30, 30, 30, 30, 30, 30, 30};
static const int kFlipsVerified[] = {3, 4, 4, 4, 23, 194, 5, 5};
static const int kTruncationsAccepted = 4;

// Every truncation and every change of one bit of a small signed archive; the parameter is the bit
// that is changed in each byte.
class EveryChange : public testing::TestWithParam<int> {
 protected:
  std::vector<std::string> truncations() const {
    std::vector<std::string> changed;
    for (size_t length = 0; length < whole_.size(); ++length) {
      changed.push_back(whole_.substr(0, length));
    }
    return changed;
  }

  std::vector<std::string> flips() const {
    std::vector<std::string> changed(whole_.size(), whole_);
    for (size_t i = 0; i < whole_.size(); ++i) {
      changed[i][i] = static_cast<char>(whole_[i] ^ 1 << GetParam());
    }
    return changed;
  }

  // Whether `dest` holds exactly what was signed.
  static bool holdsSignedEntries(const std::string& dest) {
    return test::namesIn(dest) == std::vector<std::string>{"d", "g"} &&
           test::namesIn(dest + "/d") == std::vector<std::string>{"f"} &&
           test::readFile(dest + "/d/f") == "0123456789" && test::readFile(dest + "/g").empty();
  }

  // Returns how many of the archives are verified where signatures are required. All others have
  // to be refused.
  static int countVerified(const std::vector<std::string>& archives, const std::string& whole) {
    const std::vector<Outcome> outcomes = test::tryArchives(archives, true, holdsSignedEntries);
    EXPECT_EQ(archives.size(), outcomes.size());
    int verified = 0;
    for (size_t i = 0; i < outcomes.size(); ++i) {
      const bool isRefused = outcomes[i] == Outcome::rejected || outcomes[i] == Outcome::ended;
      const bool isVerified = outcomes[i] == Outcome::verified;
      EXPECT_TRUE(test::saysTheSame(archives[i], whole) ? isVerified : isRefused)
          << static_cast<char>(outcomes[i]) << " for byte " << i;
      verified += isVerified ? 1 : 0;
    }
    return verified;
  }

  const std::string entries_ =
      test::folderRecord("d") + test::fileRecord("d/f", "0123456789") + test::fileRecord("g", "");
  const std::string whole_ = test::signedArchive(entries_);
};

INSTANTIATE_TEST_SUITE_P(Bit, EveryChange, testing::Range(0, 8));

TEST_P(EveryChange, OfABitIsVerifiedWhereASignatureIsRequiredOnlyIfTheRecordSaysTheSame) {
  EXPECT_EQ(kFlipsVerified[GetParam()], countVerified(flips(), whole_));
}

// The record itself is not covered by the signature, and an archive without one is accepted.
TEST_P(EveryChange, OfABitIsAcceptedOtherwiseWhereNoRecordIsMetOrItSaysTheSame) {
  const std::vector<std::string> archives = flips();
  const std::vector<Outcome> outcomes = test::tryArchives(archives, false);
  ASSERT_EQ(archives.size(), outcomes.size());
  int accepted = 0;
  int verified = 0;
  for (size_t i = 0; i < outcomes.size(); ++i) {
    EXPECT_NE(Outcome::crashed, outcomes[i]) << i;
    accepted += outcomes[i] == Outcome::accepted ? 1 : 0;
    verified += outcomes[i] == Outcome::verified ? 1 : 0;
    EXPECT_EQ(test::saysTheSame(archives[i], whole_), outcomes[i] == Outcome::verified) << i;
  }
  EXPECT_EQ(kFlipsAccepted[GetParam()], accepted);
  EXPECT_EQ(kFlipsVerified[GetParam()], verified);
}

class EveryTruncation : public EveryChange {
 protected:
  static bool isBetweenRecords(size_t length) {
    const size_t folder = test::folderRecord("d").size();
    const size_t file = folder + test::fileRecord("d/f", "0123456789").size();
    const size_t emptyFile = file + test::fileRecord("g", "").size();
    return length == 0 || length == folder || length == file || length == emptyFile;
  }

  // Whether the document at `path` holds `text`, wherever its lines are broken.
  static bool contains(const std::string& path, const std::string& text) {
    std::string document = test::readFile(path);
    for (size_t at = 0; (at = document.find("\n  ", at)) != std::string::npos;) {
      document.replace(at, 3, " ");
    }
    return document.find(text) != std::string::npos;
  }
};

INSTANTIATE_TEST_SUITE_P(All, EveryTruncation, testing::Values(0));

TEST_P(EveryTruncation, IsNeverAcceptedWhenASignatureIsRequired) {
  EXPECT_EQ(0, countVerified(truncations(), whole_));
}

TEST_P(EveryTruncation, IsAcceptedOtherwiseOnlyBetweenTwoRecords) {
  const std::vector<Outcome> outcomes = test::tryArchives(truncations(), false);
  ASSERT_EQ(whole_.size(), outcomes.size());
  int accepted = 0;
  for (size_t length = 0; length < outcomes.size(); ++length) {
    EXPECT_NE(Outcome::crashed, outcomes[length]) << length;
    EXPECT_NE(Outcome::verified, outcomes[length]) << length;
    accepted += outcomes[length] == Outcome::accepted ? 1 : 0;
    EXPECT_EQ(isBetweenRecords(length), outcomes[length] == Outcome::accepted) << length;
  }
  EXPECT_EQ(kTruncationsAccepted, accepted);
}

TEST_P(EveryTruncation, IsCountedInTheDocumentsTogetherWithEveryChange) {
  const auto sum = [](const int(&counts)[8]) {
    return std::to_string(std::accumulate(std::begin(counts), std::end(counts), 0));
  };
  const std::string truncations = std::to_string(whole_.size());
  const std::string flips = std::to_string(8 * whole_.size());
  const std::string accepted = std::to_string(kTruncationsAccepted);
  for (const std::string& row :
       {"| | of " + truncations + " truncations | of " + flips + " changed bits |",
        "| without: accepted as unsigned, because no signature record was found | " + accepted +
            " | " + sum(kFlipsAccepted) + " |",
        "| with or without: verified, because the changed record has the same meaning | 0 | " +
            sum(kFlipsVerified) + " |"}) {
    EXPECT_TRUE(contains(QUORVANE_SOURCE "/docs/formats.md", row)) << row;
  }
  const std::string sentence = "of " + truncations + " truncations " + accepted + " and of " +
                               flips + " changed bits " + sum(kFlipsAccepted) +
                               " leave an archive that counts as unsigned";
  const std::string required =
      "of the same changes " + sum(kFlipsVerified) +
      " leave a record that says the same, and the signed entries are installed; all others are "
      "refused";
  EXPECT_TRUE(contains(QUORVANE_SOURCE "/SECURITY.md", sentence)) << sentence;
  EXPECT_TRUE(contains(QUORVANE_SOURCE "/SECURITY.md", required)) << required;
}

TEST_P(EveryTruncation, OfNothingLeavesAnArchiveThatIsVerified) {
  EXPECT_EQ(std::vector<Outcome>{Outcome::verified}, test::tryArchives({whole_}, false));
  EXPECT_EQ(std::vector<Outcome>{Outcome::verified}, test::tryArchives({whole_}, true));
}
