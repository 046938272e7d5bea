#include "tools/formats/archive_writer.h"

#include <fnmatch.h>

#include <filesystem>
#include <map>
#include <set>

#include "tools/formats/archive_stream.h"
#include "tools/formats/lzma.h"
#include "tools/system/ascii_case.h"
#include "tools/system/child_process.h"
#include "tools/system/folder_tree.h"
#include "tools/system/input_error.h"
#include "tools/system/temporary_folder.h"

namespace fs = std::filesystem;

namespace tools {

static const char kCompressedSuffix[] = ".l2";

// On a volume that ignores case one of two such entries would replace the other.
static void requireDistinctPaths(const FolderTree& tree) {
  std::map<std::string, std::string> paths;
  for (const auto& entry : tree) {
    const std::string& path = entry.first;
    const auto [other, isNew] = paths.emplace(lowerCase(path), path);
    if (!isNew) {
      throw InputError("the paths " + other->second + " and " + path +
                       " differ only in case, which most macOS volumes ignore; rename "
                       "one");
    }
  }
}

static FolderTree listContent(const ArchiveContent& content) {
  FolderTree tree;
  if (!content.folder.empty()) {
    tree = listFolder(content.folder);
  }
  for (const auto& [path, source] : content.files) {
    if (!tree.insert({path, {false, source}}).second) {
      throw InputError("two entries have the path " + path + "; rename one");
    }
  }
  requireDistinctPaths(tree);
  return tree;
}

static bool matches(const std::string& pattern, const std::string& path) {
  const bool hasFolder = pattern.find('/') != std::string::npos;
  const std::string text = hasFolder ? path : path.substr(path.rfind('/') + 1);
  return fnmatch(pattern.c_str(), text.c_str(), FNM_PATHNAME) == 0;
}

// Returns the paths to pack.
static std::set<std::string> choosePacked(const ArchiveContent& content, const FolderTree& tree) {
  std::set<std::string> packed;
  for (const std::string& pattern : content.pack200) {
    bool isUsed = false;
    for (const auto& [path, item] : tree) {
      if (!item.isFolder && matches(pattern, path)) {
        packed.insert(path);
        isUsed = true;
      }
    }
    if (!isUsed) {
      throw InputError("the pack200 pattern " + pattern + " matches no file; correct or remove it");
    }
  }
  return packed;
}

static void writeEntries(const ArchiveContent& content, ArchiveStream* archive) {
  const FolderTree tree = listContent(content);
  const std::set<std::string> packed = choosePacked(content, tree);
  const TemporaryFolder work;
  for (const auto& [path, item] : tree) {
    if (item.isFolder) {
      archive->addFolder(path);
    } else if (packed.count(path) == 0) {
      archive->addFile(path, item.source, EntryKind::file);
    } else {
      runProgram({content.pack200Tool, item.source, work / "packed"});
      archive->addFile(path, work / "packed", EntryKind::pack200);
    }
  }
}

static void writePlain(const ArchiveContent& content, const std::string& path,
                       const SigningKey* key) {
  ArchiveStream archive(path);
  writeEntries(content, &archive);
  if (key != nullptr) {
    archive.sign(*key);
  }
  archive.finish();
}

void writeArchive(const ArchiveContent& content, const std::string& path, const SigningKey* key) {
  if (!content.folder.empty() && isInside(path, content.folder)) {
    throw InputError(path + " is inside the folder that it is made from; choose a place outside " +
                     content.folder);
  }
  if (fs::path(path).extension() != kCompressedSuffix) {
    writePlain(content, path, key);
    return;
  }
  const TemporaryFolder work;
  writePlain(content, work / "archive.p2", key);
  lzmaCompress(work / "archive.p2", path);
}

}  // namespace tools
