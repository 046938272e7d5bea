#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "tests/blackbox/pack/transcript.h"
#include "tests/support/files.h"

// The manual page beside what the commands say of themselves.

namespace {

using Options = std::set<std::string>;

Options optionsIn(const std::string& text) {
  static const std::regex kOption("--[a-z][a-z0-9-]*");
  Options options;
  for (std::sregex_iterator it(text.begin(), text.end(), kOption), end; it != end; ++it) {
    options.insert(it->str());
  }
  return options;
}

std::string helpOf(const std::string& command) {
  const test::Transcript help = test::runShell("", "quorvane-pack " + command + " --help");
  help.ends(0);
  return help.out;
}

// The options that a command has: its help lists each at the start of a line.
Options optionsOf(const std::string& command) {
  static const std::regex kStart("\n  (?:-[a-z],)?--[a-z][a-z0-9-]*");
  const std::string help = helpOf(command);
  Options options;
  for (std::sregex_iterator it(help.begin(), help.end(), kStart), end; it != end; ++it) {
    options.merge(optionsIn(it->str()));
  }
  options.erase("--help");
  return options;
}

// The commands below `command`, or itself when it has none.
std::set<std::string> commandsBelow(const std::string& command) {
  static const std::regex kName("\n  ([a-z]+)(?= )");
  const std::string help = helpOf(command);
  const size_t list = help.find("\nSubcommands:\n");
  if (list == std::string::npos) {
    return {command};
  }
  const std::string names = help.substr(list, help.find("\n\n", list) - list);
  std::set<std::string> commands;
  for (std::sregex_iterator it(names.begin(), names.end(), kName), end; it != end; ++it) {
    commands.merge(commandsBelow(command + (command.empty() ? "" : " ") + it->str(1)));
  }
  return commands;
}

std::string manualPage() {
  const std::string text = test::readFile(QUORVANE_SOURCE "/docs/man/quorvane-pack.1");
  return std::regex_replace(text, std::regex("\\\\-"), "-");
}

// What stands between the heading and the next one.
std::string sectionOf(const std::string& page, const std::string& heading) {
  const size_t start = page.find("\n" + heading + "\n");
  EXPECT_NE(std::string::npos, start) << heading;
  const size_t text = start + heading.size() + 1;
  const size_t end = std::min(page.find("\n.SS ", text), page.find("\n.SH ", text));
  return start == std::string::npos ? "" : page.substr(text, end - text);
}

struct Section {
  const char* heading;
  std::vector<const char*> commands;
};

const Section kSections[] = {
    {".SS init", {"init"}},
    {".SS build", {"build"}},
    {".SS verify", {"verify"}},
    {".SS run", {"run"}},
    {".SS sign", {"sign"}},
    {".SS key new, key show", {"key new", "key show"}},
    {".SS archive create", {"archive create"}},
    {".SS archive list, archive verify, archive extract",
     {"archive list", "archive verify", "archive extract"}},
    {".SS tail write", {"tail write"}},
    {".SS tail read", {"tail read"}},
    {".SS launchfile write, launchfile read", {"launchfile write", "launchfile read"}},
    {".SS params write", {"params write"}},
    {".SS params read", {"params read"}},
};

}  // namespace

TEST(PackManual, HasEveryOptionOfEveryCommandAndNoOther) {
  const std::string page = manualPage();
  for (const Section& section : kSections) {
    Options options;
    for (const char* command : section.commands) {
      options.merge(optionsOf(command));
    }
    EXPECT_EQ(options, optionsIn(sectionOf(page, section.heading))) << section.heading;
  }
}

TEST(PackManual, HasASectionForEveryCommand) {
  std::set<std::string> described;
  for (const Section& section : kSections) {
    described.insert(section.commands.begin(), section.commands.end());
  }
  EXPECT_EQ(commandsBelow(""), described);
}
