#include "tools/apple/signer.h"

#include <cstdlib>
#include <filesystem>

#include "tools/system/child_process.h"
#include "tools/system/input_error.h"
#include "tools/system/program_path.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

static const char kEntitlementsFile[] = "entitlements.plist";
static const char kPasswordFile[] = "password";
static const unsigned kSecretMode = 0600;
// Long enough for a service that usually answers within minutes.
static const char kLongestWait[] = "3600";

std::string findRcodesign() {
  return findInPath("rcodesign", false);
}

static std::string environmentText(const char* name) {
  const char* const value = getenv(name);
  return value == nullptr ? "" : value;
}

Signer::Signer(const AppleSigning& settings) : settings_(settings) {
  findTool();
  if (!isAvailable()) {
    return;
  }
  writeWhole(work_ / kEntitlementsFile, entitlementsText(settings.entitlements));
  if (!settings.certificate.empty() && isPkcs12(settings.certificate)) {
    password_ = settings.passwordFile;
    if (password_.empty()) {
      // The first line is the password. Without a file the tool would ask on the terminal.
      password_ = work_ / kPasswordFile;
      writeWhole(password_, environmentText(APPLE_PASSWORD_VARIABLE) + "\n", kSecretMode);
    }
  }
}

bool Signer::hasCertificate() const {
  return !settings_.certificate.empty() || !settings_.identity.empty();
}

void Signer::findTool() {
  const std::string rcodesign = findRcodesign();
  const std::string codesign = findInPath("codesign", false);
  if (!settings_.identity.empty()) {
    if (codesign.empty()) {
      throw InputError(
          "[signing.apple] identity is a certificate in a Mac's keychain, and there is no codesign "
          "here; name the certificate's file with 'certificate'");
    }
    tool_ = Tool::codesign;
  } else if (!rcodesign.empty()) {
    tool_ = Tool::rcodesign;
  } else if (!settings_.certificate.empty()) {
    throw InputError(
        "[signing.apple] certificate needs rcodesign, which is not on the PATH; "
        "scripts/install-rcodesign of the packager's sources builds it");
  } else if (!codesign.empty()) {
    tool_ = Tool::codesign;
  }
  program_ = tool_ == Tool::codesign ? codesign : rcodesign;
  program_ = program_.empty() ? program_ : fs::absolute(program_).string();
}

// Runs a program in the temporary folder: rcodesign reads settings from the current one.
void Signer::run(const std::vector<std::string>& arguments) const {
  runForOutput(arguments, work_ / ".");
}

std::vector<std::string> Signer::certificateArguments() const {
  std::vector<std::string> arguments;
  if (settings_.certificate.empty()) {
    return arguments;
  }
  const auto path = [](const std::string& file) { return fs::absolute(file).string(); };
  if (password_.empty()) {
    arguments = {"--pem-file", path(settings_.certificate)};
    if (!settings_.key.empty()) {
      arguments.insert(arguments.end(), {"--pem-file", path(settings_.key)});
    }
  } else {
    arguments = {"--p12-file", path(settings_.certificate), "--p12-password-file", path(password_)};
  }
  if (!settings_.hasTimestamp) {
    arguments.insert(arguments.end(), {"--timestamp-url", "none"});
  }
  if (!settings_.team.empty()) {
    arguments.insert(arguments.end(), {"--team-name", settings_.team});
  }
  return arguments;
}

void Signer::sign(const std::string& path, CodeRole role) const {
  const std::string entitlements = work_ / kEntitlementsFile;
  std::vector<std::string> arguments;
  if (tool_ == Tool::rcodesign) {
    arguments = {program_, "sign", "--code-signature-flags", "runtime"};
    if (role == CodeRole::jvm) {
      arguments.insert(arguments.end(), {"--entitlements-xml-file", entitlements});
    }
    const std::vector<std::string> more = certificateArguments();
    arguments.insert(arguments.end(), more.begin(), more.end());
  } else {
    const bool hasTimestamp = settings_.hasTimestamp && hasCertificate();
    arguments = {program_,
                 "--force",
                 "--options",
                 "runtime",
                 hasTimestamp ? "--timestamp" : "--timestamp=none",
                 "--sign",
                 settings_.identity.empty() ? "-" : settings_.identity};
    if (role == CodeRole::jvm) {
      arguments.insert(arguments.end(), {"--entitlements", entitlements});
    } else {
      arguments.emplace_back("--preserve-metadata=entitlements");
    }
  }
  arguments.push_back(fs::absolute(path));
  run(arguments);
}

void Signer::signFile(const std::string& path, CodeRole role) const {
  sign(path, role);
}

void Signer::signBundle(const std::string& path) const {
  sign(path, CodeRole::jvm);
}

bool Signer::mustNotarise() const {
  return !settings_.notaryKey.empty() || !settings_.notaryProfile.empty();
}

void Signer::notarise(const std::string& path) const {
  const std::string bundle = fs::absolute(path);
  if (tool_ == Tool::rcodesign) {
    run({program_, "notary-submit", "--api-key-file", fs::absolute(settings_.notaryKey).string(),
         "--max-wait-seconds", kLongestWait, "--staple", bundle});
    return;
  }
  const std::string zip = work_ / "upload.zip";
  run({"/usr/bin/ditto", "-c", "-k", "--keepParent", bundle, zip});
  run({"/usr/bin/xcrun", "notarytool", "submit", zip, "--keychain-profile", settings_.notaryProfile,
       "--wait"});
  run({"/usr/bin/xcrun", "stapler", "staple", bundle});
}

}  // namespace tools
