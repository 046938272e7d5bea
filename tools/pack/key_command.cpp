#include <cstdio>
#include <memory>
#include <string>

#include "tools/keys/key_file.h"
#include "tools/keys/signing.h"
#include "tools/pack/commands.h"

namespace tools {

namespace {
struct KeyOptions {
  std::string path;
  int bits = DEFAULT_KEY_BITS;
};
}  // namespace

static void makeKey(const KeyOptions& options) {
  const std::string fault = faultOfKeySize(options.bits);
  if (!fault.empty()) {
    failUsage(fault);
  }
  const SigningKey key = SigningKey::generate(options.bits);
  writePrivateKey(options.path, key.privateKeyPem());
  fprintf(stderr, "Wrote a private key of %d bits to %s. Keep it safe and do not publish it.\n",
          key.bits(), options.path.c_str());
  printf("%s\n", key.publicKeyHex().c_str());
}

static void showKey(const KeyOptions& options) {
  const SigningKey key = SigningKey::read(options.path);
  warnOfOpenKey(options.path);
  printf("%s\n", key.publicKeyHex().c_str());
}

static void addNew(const Command& key) {
  const Command command = key.add("new", "Makes a private key and prints its public key.",
                                  "Example:\n  quorvane-pack key new release.key");
  auto options = std::make_shared<KeyOptions>();
  command.text("FILE", &options->path, "Where the private key goes; must not exist yet").required();
  command.number("--bits", &options->bits, "Size of the key").withDefault();
  command.runs([options] { makeKey(*options); });
}

static void addShow(const Command& key) {
  const Command command = key.add("show", "Prints the public key of a private key.",
                                  "Example:\n  quorvane-pack key show release.key");
  auto options = std::make_shared<KeyOptions>();
  command.text("FILE", &options->path, "The private key, or - for standard input").required();
  command.runs([options] { showKey(*options); });
}

void addKeyCommand(const Command& app) {
  const Command key = app.addGroup("key", "Makes and shows the key that signs archives.",
                                   "Example:\n  quorvane-pack key new release.key");
  addNew(key);
  addShow(key);
}

}  // namespace tools
