#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "tools/formats/archive_reader.h"
#include "tools/formats/archive_writer.h"
#include "tools/formats/lzma.h"
#include "tools/keys/key_file.h"
#include "tools/keys/public_key.h"
#include "tools/keys/signing.h"
#include "tools/pack/commands.h"
#include "tools/system/input_error.h"
#include "tools/system/temporary_folder.h"
#include "tools/system/texts.h"
#include "tools/verify/product_extraction.h"

namespace fs = std::filesystem;

namespace tools {

namespace {

struct CreateOptions {
  ArchiveContent content;
  std::string path;
  std::string keyPath;
  std::vector<std::string> added;
  std::vector<std::string> special;
};

struct ReadOptions {
  std::string path;
  std::string publicKeyPath;
  Extraction extraction;
};

// An archive as an uncompressed file: itself, or its decompressed content in a temporary folder.
class PlainArchive {
 public:
  explicit PlainArchive(const std::string& path) : path_(path) {
    if (fs::path(path).extension() == ".l2") {
      path_ = work_ / "archive.p2";
      lzmaDecompress(path, path_);
    }
  }
  const std::string& path() const { return path_; }

 private:
  TemporaryFolder work_;
  std::string path_;
};

}  // namespace

// Reads a public key in the form that 'key show' prints; none if there is no path.
static PublicKey readPublicKey(const std::string& path) {
  if (path.empty()) {
    return nullptr;
  }
  PublicKey key = publicKeyFromHex(readKeyText(path));
  if (key == nullptr) {
    throw InputError(path +
                     " contains no public key; expected the text that 'quorvane-pack key show' "
                     "prints");
  }
  return key;
}

static void addFile(const std::string& option, const std::string& prefix, const std::string& text,
                    ArchiveContent* content) {
  const size_t split = text.find('=');
  if (split == std::string::npos || split == 0) {
    failUsage(option + " " + text + " cannot be read; expected NAME=FILE");
  }
  content->files.emplace_back(prefix + text.substr(0, split), text.substr(split + 1));
}

// Whether the path has anything before the ending.
static bool isNamed(const std::string& path, const std::string& ending) {
  return endsWith(path, ending) && path != ending;
}

// Archives are recognised by their names, and no other file may be replaced.
static void requireArchiveName(const std::string& path) {
  if (!isNamed(path, ".p2") && !isNamed(path, ".p2.l2")) {
    failUsage(path + " is not an archive name; expected NAME.p2 or NAME.p2.l2");
  }
}

static SigningKey readKey(const CreateOptions& options) {
  const std::string fault = faultOfKeyPlace(options.keyPath, options.content.folder);
  if (!fault.empty()) {
    throw InputError("--key names " + options.keyPath + ", " + fault);
  }
  for (const auto& [path, source] : options.content.files) {
    std::error_code ignored;
    if (fs::equivalent(options.keyPath, source, ignored)) {
      throw InputError("the entry " + path + " is the private key and would be published");
    }
  }
  warnOfOpenKey(options.keyPath);
  return SigningKey::read(options.keyPath);
}

static void create(CreateOptions options) {
  requireArchiveName(options.path);
  for (const std::string& text : options.added) {
    addFile("--add", "", text, &options.content);
  }
  for (const std::string& text : options.special) {
    addFile("--special", SPECIAL_BLOCK_PREFIX, text, &options.content);
  }
  if (!options.content.pack200.empty() && options.content.pack200Tool.empty()) {
    failUsage("--pack200 needs a packing program; name one with --pack200-tool");
  }
  std::unique_ptr<SigningKey> key;
  if (!options.keyPath.empty()) {
    key = std::make_unique<SigningKey>(readKey(options));
  }
  writeArchive(options.content, options.path, key.get());
}

static const char* nameOf(const ArchiveEntry& entry) {
  if (entry.kind == EntryKind::folder) {
    return "folder";
  }
  if (entry.path.rfind(SPECIAL_BLOCK_PREFIX, 0) == 0) {
    return "special";
  }
  return entry.kind == EntryKind::pack200 ? "pack200" : "file";
}

// The path with unprintable characters written as \xNN, so that it is shown on one line.
static std::string printable(const std::string& path) {
  std::string text;
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7F) {
      char escaped[5];
      snprintf(escaped, sizeof escaped, "\\x%02x", byte);
      text += escaped;
    } else {
      text.push_back(c);
    }
  }
  return text;
}

static void list(const ReadOptions& options) {
  const PlainArchive archive(options.path);
  const ArchiveListing listing = readArchive(archive.path(), options.path);
  for (const ArchiveEntry& entry : listing.entries) {
    printf("%-8s%12ld  %s\n", nameOf(entry), entry.length, printable(entry.path).c_str());
  }
  if (listing.isSigned) {
    printf("signed with %zu bits over %ld bytes\n", 4 * listing.signatureHex.size(),
           listing.signedLength);
  } else {
    printf("not signed\n");
  }
}

static void verify(const ReadOptions& options) {
  const PublicKey key = readPublicKey(options.publicKeyPath);
  const PlainArchive archive(options.path);
  const ArchiveListing listing = readArchive(archive.path(), options.path);
  checkSignature(archive.path(), options.path, listing, key.get());
  printf("%s: %zu entries, the signature is valid\n", options.path.c_str(), listing.entries.size());
}

static void extract(ReadOptions options) {
  const PublicKey key = readPublicKey(options.publicKeyPath);
  const PlainArchive archive(options.path);
  const ArchiveListing listing = readArchive(archive.path(), options.path);
  if (listing.isSigned && key == nullptr) {
    throw InputError(options.path + " is signed; name its key with --public-key");
  }
  options.extraction.archive = archive.path();
  options.extraction.name = options.path;
  options.extraction.trust = {key.get(), key != nullptr};
  extractAsProduct(options.extraction);
}

static void addCreate(const Command& archive) {
  const Command command = archive.add(
      "create", "Makes an archive from a folder's content.",
      "Symbolic links are stored as copies of what they point to.\n"
      "Example:\n  quorvane-pack archive create --key release.key runtime JREArchive.p2.l2");
  auto options = std::make_shared<CreateOptions>();
  command.text("FOLDER", &options->content.folder, "The folder").required();
  command
      .text("ARCHIVE", &options->path,
            "The archive, NAME.p2, or NAME.p2.l2 if compressed with LZMA")
      .required();
  command.text("--key", &options->keyPath, "Sign with this private key; - is standard input");
  command.texts("--add", &options->added, "Add FILE under PATH, for instance another archive")
      .typeName("PATH=FILE")
      .oneByOne();
  command.texts("--special", &options->special, "Add FILE as the special block NAME")
      .typeName("NAME=FILE")
      .oneByOne();
  command
      .texts("--pack200", &options->content.pack200,
             "Pack the jars that match PATTERN with pack200")
      .typeName("PATTERN")
      .oneByOne();
  command.text("--pack200-tool", &options->content.pack200Tool,
               "The packing program, called with input and output");
  command.runs([options] { create(*options); });
}

static Option addArchive(const Command& command, ReadOptions* options) {
  return command.text("ARCHIVE", &options->path, "The archive, NAME.p2 or NAME.p2.l2").required();
}

static Option addPublicKey(const Command& command, ReadOptions* options) {
  return command.text("--public-key", &options->publicKeyPath,
                      "The file with the public key, as 'key show' prints it");
}

static void addList(const Command& archive) {
  const Command command = archive.add("list", "Lists the contents of an archive.",
                                      "Example:\n  quorvane-pack archive list JREArchive.p2.l2");
  auto options = std::make_shared<ReadOptions>();
  addArchive(command, options.get());
  command.runs([options] { list(*options); });
}

static void addVerify(const Command& archive) {
  const Command command =
      archive.add("verify", "Checks an archive's records and its signature.",
                  "Example:\n  quorvane-pack key show release.key > release.pub\n"
                  "  quorvane-pack archive verify --public-key release.pub JREArchive.p2.l2");
  auto options = std::make_shared<ReadOptions>();
  addArchive(command, options.get());
  addPublicKey(command, options.get()).required();
  command.runs([options] { verify(*options); });
}

static void addExtract(const Command& archive) {
  const Command command =
      archive.add("extract", "Extracts an archive as an installer does, into a new folder.",
                  "With --public-key, an archive not signed with that key is refused.\n"
                  "Example:\n  quorvane-pack archive extract --public-key release.pub app.p2 app");
  auto options = std::make_shared<ReadOptions>();
  addArchive(command, options.get());
  command.text("FOLDER", &options->extraction.folder, "The folder, new or empty").required();
  addPublicKey(command, options.get());
  command.text("--unpack200", &options->extraction.unpack200, "The program for pack200 entries");
  command.runs([options] { extract(*options); });
}

void addArchiveCommand(const Command& app) {
  const Command archive = app.addGroup("archive", "Makes, shows and checks archives.",
                                       "Example:\n  quorvane-pack archive list JREArchive.p2.l2");
  addCreate(archive);
  addList(archive);
  addVerify(archive);
  addExtract(archive);
}

}  // namespace tools
