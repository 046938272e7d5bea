#include <cstdio>
#include <memory>
#include <string>

#include "tools/key_file.h"
#include "tools/pack/commands.h"
#include "tools/signing.h"

namespace tools {

namespace {
struct KeyOptions {
  std::string path;
  int bits = DEFAULT_KEY_BITS;
};
}  // namespace

static void makeKey(const KeyOptions& options) {
  const SigningKey key = SigningKey::generate(options.bits);
  writePrivateKey(options.path, key.privateKeyPem());
  fprintf(stderr,
          "Wrote a private key of %d bits to %s. Keep it safe, and out of what you publish.\n",
          key.bits(), options.path.c_str());
  printf("%s\n", key.publicKeyHex().c_str());
}

static void showKey(const KeyOptions& options) {
  const SigningKey key = SigningKey::read(options.path);
  if (options.path != "-" && isOpenToOthers(options.path)) {
    fprintf(stderr, "quorvane-pack: others may read %s; run 'chmod 600' on it\n",
            options.path.c_str());
  }
  printf("%s\n", key.publicKeyHex().c_str());
}

static void addNew(CLI::App* key) {
  CLI::App* command = key->add_subcommand("new", "Makes a private key and prints its public key.");
  auto options = std::make_shared<KeyOptions>();
  command->add_option("FILE", options->path, "Where the private key goes; must not exist yet")
      ->required();
  command->add_option("--bits", options->bits, "Size of the key")->capture_default_str();
  command->footer("Example:\n  quorvane-pack key new release.key");
  command->callback([options] { makeKey(*options); });
}

static void addShow(CLI::App* key) {
  CLI::App* command = key->add_subcommand("show", "Prints the public key of a private key.");
  auto options = std::make_shared<KeyOptions>();
  command->add_option("FILE", options->path, "The private key, or - for standard input")
      ->required();
  command->footer("Example:\n  quorvane-pack key show release.key");
  command->callback([options] { showKey(*options); });
}

void addKeyCommand(CLI::App* app) {
  CLI::App* key = app->add_subcommand("key", "Makes and shows the key that signs archives.");
  key->require_subcommand(1);
  key->footer("Example:\n  quorvane-pack key new release.key");
  addNew(key);
  addShow(key);
}

}  // namespace tools
