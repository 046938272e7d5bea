#include "tools/bundle/output_folder.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "tools/system/fixed_time.h"
#include "tools/system/folder_tree.h"
#include "tools/system/input_error.h"
#include "tools/system/texts.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

static const char kHead[] = "Made by quorvane-pack build, which replaces what is listed here:";
static const char kUnfinished[] = ".quorvane-unfinished";
// The folder of earlier results while new ones replace them.
static const char kReplaced[] = ".quorvane-replaced";

std::vector<std::string> madeIn(const std::string& path) {
  std::ifstream in(path + "/" + OUTPUT_LIST);
  std::string line;
  std::vector<std::string> names;
  if (!std::getline(in, line) || line != kHead) {
    return names;
  }
  while (std::getline(in, line)) {
    // Nothing outside the folder, whatever the list says.
    if (!line.empty() && line != "." && line != ".." && line.find('/') == std::string::npos) {
      names.push_back(line);
    }
  }
  return names;
}

// A list that a killed build has not finished.
static bool isUnfinishedList(const std::string& name) {
  return startsWith(name, std::string(OUTPUT_LIST) + ".part-");
}

static void removeUnfinishedLists(const std::string& path) {
  std::vector<fs::path> lists;
  for (const auto& entry : fs::directory_iterator(path)) {
    if (isUnfinishedList(entry.path().filename())) {
      lists.push_back(entry.path());
    }
  }
  for (const fs::path& list : lists) {
    fs::remove(list);
  }
}

static void refuseForeignContent(const std::string& path) {
  const std::vector<std::string> made = madeIn(path);
  for (const auto& entry : fs::directory_iterator(path)) {
    const std::string name = entry.path().filename();
    const bool isOwn = name == OUTPUT_LIST
                           ? !made.empty()
                           : name == kUnfinished || name == kReplaced || isUnfinishedList(name) ||
                                 std::count(made.begin(), made.end(), name) > 0;
    if (!isOwn) {
      throw InputError("the output folder " + path + " contains " + name +
                       ", which this command did not make; choose a new or empty folder with "
                       "--output, or move that away");
    }
  }
}

OutputFolder::OutputFolder(const std::string& path) : path_(path) {
  try {
    if (fs::exists(path) && !fs::is_directory(path)) {
      throw InputError(path + " is not a folder; choose another one with --output");
    }
    fs::create_directories(path);
    refuseForeignContent(path);
    removeUnfinishedLists(path);
    restoreReplaced();
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

std::string OutputFolder::unfinished() const {
  return path_ + "/" + kUnfinished;
}

static void setTime(const std::string& path, long seconds) {
  const timespec times[2] = {{seconds, 0}, {seconds, 0}};
  utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW);
}

// Sets the time of the folder and of everything in it.
static void setTimes(const std::string& folder, long seconds) {
  for (const auto& [path, item] : listFolder(folder)) {
    setTime(item.source, seconds);
  }
  setTime(folder, seconds);
}

static std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) {
    names.push_back(entry.path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

static void writeList(const std::string& folder, const std::vector<std::string>& names) {
  std::string list = std::string(kHead) + "\n";
  for (const std::string& name : names) {
    list += name + "\n";
  }
  writeWhole(folder + "/" + OUTPUT_LIST, list);
}

// Restores earlier results that new ones were about to replace.
void OutputFolder::restoreReplaced() const {
  const std::string replaced = path_ + "/" + kReplaced;
  if (!fs::exists(replaced)) {
    return;
  }
  for (const std::string& name : namesIn(replaced)) {
    fs::remove_all(finalPath(name));
    fs::rename(replaced + "/" + name, finalPath(name));
  }
  fs::remove(replaced);
}

// Replaces the earlier results by the new ones. Both are listed meanwhile: if this is interrupted,
// the next build still knows what it owns, and restores the earlier ones.
void OutputFolder::exchange(const std::vector<std::string>& earlier,
                            const std::vector<std::string>& made) const {
  std::vector<std::string> all = earlier;
  all.insert(all.end(), made.begin(), made.end());
  writeList(path_, all);
  const std::string replaced = path_ + "/" + kReplaced;
  fs::create_directory(replaced);
  for (const std::string& name : earlier) {
    if (fs::exists(fs::symlink_status(finalPath(name)))) {
      fs::rename(finalPath(name), replaced + "/" + name);
    }
  }
  for (const std::string& name : made) {
    fs::rename(*this / name, finalPath(name));
  }
  writeList(path_, made);
  // From here on the new ones are in place; the destructor removes the earlier ones.
  fs::rename(replaced, *this / kReplaced);
}

// Undoes an exchange that failed.
void OutputFolder::takeBack(const std::vector<std::string>& earlier,
                            const std::vector<std::string>& made) const noexcept {
  try {
    for (const std::string& name : made) {
      if (!fs::exists(fs::symlink_status(*this / name))) {
        fs::rename(finalPath(name), *this / name);
      }
    }
    restoreReplaced();
    writeList(path_, earlier);
  } catch (const std::exception&) {
    // the folder cannot be written at all; the next build tries again
  }
}

void OutputFolder::finish() {
  const long time = fixedTime();
  if (time >= 0) {
    setTimes(unfinished(), time);
  }
  const std::vector<std::string> earlier = madeIn(path_);
  const std::vector<std::string> made = namesIn(unfinished());
  try {
    exchange(earlier, made);
  } catch (const fs::filesystem_error& error) {
    takeBack(earlier, made);
    throw InputError("the output folder " + path_ + " cannot be written: " + error.what());
  } catch (const InputError&) {
    takeBack(earlier, made);
    throw;
  }
}

}  // namespace tools
