#ifndef QUORVANE_TESTS_BLACKBOX_PACK_TRANSCRIPT_H
#define QUORVANE_TESTS_BLACKBOX_PACK_TRANSCRIPT_H

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "tests/support/process.h"

namespace test {

// Where a test calls something, as the default of that function's last parameter.
struct Place {
  const char* file;
  int line;

  static Place here(const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
    return {file, line};
  }
};

// A command that has ended, and what is expected of it:
//
//   runPack(folder, {"key", "show", "a.key"}).fails("a.key cannot be read").leavesNo("a.pub");
//
// An expectation that is not met fails the test, which goes on, at the line of the test, and shows
// the command line, what was wanted, and all that the command printed.
struct Transcript : Result {
  std::string command;  // the command line, as a shell takes it; very long words are cut
  std::string folder;   // where it ran; empty for this process's own folder

  // Its exit status is this one.
  const Transcript& ends(int wanted, Place place = Place::here()) const;

  // Standard output, or standard error, is exactly this text.
  const Transcript& prints(const std::string& text, Place place = Place::here()) const;
  const Transcript& reports(const std::string& text, Place place = Place::here()) const;

  // Standard output, or standard error, contains the text somewhere, or nowhere.
  const Transcript& mentions(const std::string& text, Place place = Place::here()) const;
  const Transcript& mentionsNo(const std::string& text, Place place = Place::here()) const;
  const Transcript& reportsAlso(const std::string& text, Place place = Place::here()) const;
  const Transcript& reportsNo(const std::string& text, Place place = Place::here()) const;

  // It ends with status 1, and all of standard error is this message in quorvane-pack's form.
  const Transcript& fails(const std::string& message, Place place = Place::here()) const;

  // It ends with status 2, and standard error begins with this text.
  const Transcript& isMisused(const std::string& start = "", Place place = Place::here()) const;

  // Afterwards the file or folder exists, or is missing; a relative path is below `folder`.
  const Transcript& leaves(const std::string& path, Place place = Place::here()) const;
  const Transcript& leavesNo(const std::string& path, Place place = Place::here()) const;

  // Whether it ended with status 0, for ASSERT_TRUE.
  [[nodiscard]] testing::AssertionResult succeeded() const;

 private:
  const Transcript& expect(bool isMet, const std::string& wanted, Place place) const;
  std::string shown() const;
};

// Runs a command to its end.
Transcript transcriptOf(const Command& command);

// Runs a shell's script in the folder, or in this process's own if that is empty. It finds
// quorvane-pack by its name.
Transcript runShell(const std::string& folder, const std::string& script);

// Runs quorvane-pack in this process's own folder.
Transcript runPack(const std::vector<std::string>& words);

// Runs quorvane-pack in the folder `folder`, below which its cache is unless the environment names
// another place. Unless the words ask for its steps with --verbose, the transcript is without the
// lines about its progress.
Transcript runPack(const std::string& folder, const std::vector<std::string>& words,
                   const std::map<std::string, std::string>& environment = {},
                   double seconds = 170);

// The command that runs quorvane-pack with these words in the folder `folder`, to be changed before
// it is run.
Command packCommand(const std::string& folder, const std::vector<std::string>& words);

// Returns a command's standard error without the lines about its progress.
std::string withoutProgress(const std::string& err);

}  // namespace test

#endif
