#include "tests/blackbox/pack/transcript.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>

#include "tests/support/files.h"

namespace test {

// A word as a shell takes it, unless it is so long that nobody would read it.
static std::string quoted(const std::string& word) {
  static const char kPlain[] =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_@%+=:,./-";
  constexpr size_t kLongest = 1000;
  if (word.size() > kLongest) {
    return quoted(word.substr(0, kLongest)) + "...";
  }
  if (!word.empty() && word.find_first_not_of(kPlain) == std::string::npos) {
    return word;
  }
  std::string text;
  for (const char c : word) {
    text += c == '\'' ? "'\\''" : std::string(1, c);
  }
  return "'" + text + "'";
}

static std::string commandLine(const std::vector<std::string>& words) {
  std::string line;
  for (const std::string& word : words) {
    line += (line.empty() ? "" : " ") + quoted(word);
  }
  return line;
}

Transcript transcriptOf(const Command& command) {
  Transcript transcript;
  static_cast<Result&>(transcript) = run(command);
  transcript.command = commandLine(command.arguments);
  transcript.folder = command.folder;
  return transcript;
}

Command packCommand(const std::string& folder, const std::vector<std::string>& words) {
  Command command;
  command.arguments = {QUORVANE_BIN "/quorvane-pack"};
  command.arguments.insert(command.arguments.end(), words.begin(), words.end());
  command.folder = folder;
  return command;
}

Transcript runShell(const std::string& folder, const std::string& script) {
  Command command;
  command.arguments = {"/bin/sh", "-c", script};
  command.environment = {{"PATH", std::string(QUORVANE_BIN ":") + getenv("PATH")}};
  command.folder = folder;
  return transcriptOf(command);
}

Transcript runPack(const std::vector<std::string>& words) {
  return transcriptOf(packCommand("", words));
}

Transcript runPack(const std::string& folder, const std::vector<std::string>& words,
                   const std::map<std::string, std::string>& environment, double seconds) {
  Command command = packCommand(folder, words);
  command.environment = environment;
  if (!folder.empty()) {
    command.environment.insert({"XDG_CACHE_HOME", folder + "/cache"});
  }
  command.seconds = seconds;
  Transcript transcript = transcriptOf(command);
  if (std::find(words.begin(), words.end(), "--verbose") == words.end()) {
    transcript.err = withoutProgress(transcript.err);
  }
  return transcript;
}

std::string withoutProgress(const std::string& err) {
  std::string rest;
  for (size_t at = 0; at < err.size();) {
    const size_t end = std::min(err.find('\n', at), err.size() - 1) + 1;
    const std::string line = err.substr(at, end - at);
    const bool isStep = line[0] == '[' && isdigit(static_cast<unsigned char>(line[1])) != 0;
    rest += isStep || line.rfind("done in ", 0) == 0 ? "" : line;
    at = end;
  }
  return rest;
}

std::string Transcript::shown() const {
  const std::string end = timedOut      ? "did not end"
                          : signal != 0 ? "was ended by signal " + std::to_string(signal)
                                        : "ended with status " + std::to_string(status);
  return "$ " + command + "\n" + out + "standard error:\n" + err + "It " + end + ".\n";
}

const Transcript& Transcript::expect(bool isMet, const std::string& wanted, Place place) const {
  if (!isMet) {
    ADD_FAILURE_AT(place.file, place.line) << shown() << "Wanted: " << wanted;
  }
  return *this;
}

const Transcript& Transcript::ends(int wanted, Place place) const {
  return expect(status == wanted, "status " + std::to_string(wanted), place);
}

// Names the first line in which two texts differ.
static std::string difference(const std::string& wanted, const std::string& got) {
  const std::vector<std::string> lines = linesOf(got);
  size_t at = 0;
  for (const std::string& line : linesOf(wanted)) {
    if (at == lines.size() || lines[at] != line) {
      const std::string other = at == lines.size() ? "nothing" : "[" + lines[at] + "]";
      return "\nLine " + std::to_string(at + 1) + " is " + other + ", not [" + line + "].";
    }
    ++at;
  }
  return at == lines.size() ? "\nThe end of the last line differs."
                            : "\nLine " + std::to_string(at + 1) + " is one too many.";
}

const Transcript& Transcript::prints(const std::string& text, Place place) const {
  return expect(
      out == text,
      "exactly this on standard output:\n" + text + (out == text ? "" : difference(text, out)),
      place);
}

const Transcript& Transcript::reports(const std::string& text, Place place) const {
  return expect(
      err == text,
      "exactly this on standard error:\n" + text + (err == text ? "" : difference(text, err)),
      place);
}

const Transcript& Transcript::mentions(const std::string& text, Place place) const {
  return expect(out.find(text) != std::string::npos, "this on standard output:\n" + text, place);
}

const Transcript& Transcript::mentionsNo(const std::string& text, Place place) const {
  return expect(out.find(text) == std::string::npos, "standard output without this:\n" + text,
                place);
}

const Transcript& Transcript::reportsAlso(const std::string& text, Place place) const {
  return expect(err.find(text) != std::string::npos, "this on standard error:\n" + text, place);
}

const Transcript& Transcript::reportsNo(const std::string& text, Place place) const {
  return expect(err.find(text) == std::string::npos, "standard error without this:\n" + text,
                place);
}

const Transcript& Transcript::fails(const std::string& message, Place place) const {
  return ends(1, place).reports("quorvane-pack: " + message + "\n", place);
}

const Transcript& Transcript::isMisused(const std::string& start, Place place) const {
  ends(2, place);
  return expect(err.rfind(start, 0) == 0, "this at the start of standard error:\n" + start, place);
}

static std::string pathBelow(const std::string& folder, const std::string& path) {
  return (std::filesystem::path(folder) / path).string();
}

const Transcript& Transcript::leaves(const std::string& path, Place place) const {
  return expect(exists(pathBelow(folder, path)), path + " to exist afterwards", place);
}

const Transcript& Transcript::leavesNo(const std::string& path, Place place) const {
  return expect(!exists(pathBelow(folder, path)), path + " to be missing afterwards", place);
}

testing::AssertionResult Transcript::succeeded() const {
  return status == 0 ? testing::AssertionSuccess() : testing::AssertionFailure() << shown();
}

}  // namespace test
