#include "tools/output_folder.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tools/folder_tree.h"
#include "tools/input_error.h"
#include "tools/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

static const char kHead[] = "Made by quorvane-pack build, which replaces what is listed here:";
static const char kUnfinished[] = ".quorvane-unfinished";

std::vector<std::string> madeIn(const std::string& path) {
  std::ifstream in(path + "/" + OUTPUT_LIST);
  std::string line;
  std::vector<std::string> names;
  if (!std::getline(in, line) || line != kHead) {
    return names;
  }
  while (std::getline(in, line)) {
    // Nothing outside of the folder, whoever wrote the list.
    if (!line.empty() && line != "." && line != ".." && line.find('/') == std::string::npos) {
      names.push_back(line);
    }
  }
  return names;
}

static void refuseForeignContent(const std::string& path) {
  const std::vector<std::string> made = madeIn(path);
  for (const auto& entry : fs::directory_iterator(path)) {
    const std::string name = entry.path().filename();
    const bool isOwn = name == OUTPUT_LIST
                           ? !made.empty()
                           : name == kUnfinished || std::count(made.begin(), made.end(), name) > 0;
    if (!isOwn) {
      throw InputError("the output folder " + path + " holds " + name +
                       ", which this command did not make; choose a new or empty folder with "
                       "--output, or move that away");
    }
  }
}

OutputFolder::OutputFolder(const std::string& path) : path_(path) {
  try {
    if (fs::exists(path) && !fs::is_directory(path)) {
      throw InputError(path + " is no folder; choose another one with --output");
    }
    fs::create_directories(path);
    refuseForeignContent(path);
    fs::remove_all(path + "/" + kUnfinished);
    fs::create_directory(path + "/" + kUnfinished);
  } catch (const fs::filesystem_error& error) {
    throw InputError("the output folder " + path + " cannot be written: " + error.code().message());
  }
}

OutputFolder::~OutputFolder() {
  std::error_code ignored;
  fs::remove_all(path_ + "/" + kUnfinished, ignored);
}

std::string OutputFolder::operator/(const std::string& name) const {
  return path_ + "/" + kUnfinished + "/" + name;
}

// Returns the time in SOURCE_DATE_EPOCH, or -1 when it is not set.
static long fixedTime() {
  const char* text = getenv("SOURCE_DATE_EPOCH");
  if (text == nullptr || *text == '\0') {
    return -1;
  }
  const std::string digits = text;
  constexpr size_t kMostDigits = 11;
  if (digits.size() > kMostDigits || digits.find_first_not_of("0123456789") != std::string::npos) {
    throw InputError("SOURCE_DATE_EPOCH is \"" + digits +
                     "\"; it is a number of seconds since the start of 1970");
  }
  return atol(text);
}

static void setTime(const std::string& path, long seconds) {
  const timespec times[2] = {{seconds, 0}, {seconds, 0}};
  utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW);
}

// Sets the time of all in the folder and of itself.
static void setTimes(const std::string& folder, long seconds) {
  for (const auto& [path, item] : listFolder(folder)) {
    setTime(item.source, seconds);
  }
  setTime(folder, seconds);
}

void OutputFolder::finish() {
  const std::string unfinished = path_ + "/" + kUnfinished;
  const long time = fixedTime();
  if (time >= 0) {
    setTimes(unfinished, time);
  }
  try {
    std::vector<std::string> names;
    std::string list = std::string(kHead) + "\n";
    for (const auto& entry : fs::directory_iterator(unfinished)) {
      names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    for (const std::string& name : madeIn(path_)) {
      fs::remove_all(finalPath(name));
    }
    for (const std::string& name : names) {
      list += name + "\n";
    }
    // The list first: should this end in between, the next build still knows what is its own.
    writeWhole(finalPath(OUTPUT_LIST), list);
    for (const std::string& name : names) {
      fs::rename(unfinished + "/" + name, finalPath(name));
    }
  } catch (const fs::filesystem_error& error) {
    throw InputError("the output folder " + path_ + " cannot be written: " + error.what());
  }
}

}  // namespace tools
