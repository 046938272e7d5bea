#include "tests/support/launch_scene.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>

#include "tests/support/files.h"

namespace test {

LaunchScene::LaunchScene() {
  launchFile.mainClass = "com.sample.Main";
  launchFile.appName = "Sample";
  launchFile.compatibilityClass = "com.sample.Probe";
}

void LaunchScene::writeLaunchFile() const {
  writeFile(appFolder() + "/QuorvaneLaunch", tools::encodeLaunchFile(launchFile));
}

void LaunchScene::writeOptionsFile(const std::vector<std::string>& options) const {
  writeFile(optionsFile(), tools::encodeOptionsFile(options));
}

void LaunchScene::installFakeRuntime(const std::string& folder) const {
  writeFile(folder + "/bin/java", readFile(fakeJava()), 0755);
}

std::vector<std::string> LaunchScene::propertiesFiles() const {
  std::vector<std::string> paths;
  for (const std::string& name : namesIn(appFolder())) {
    if (name.rfind("QVLaunchProperties-", 0) == 0) {
      paths.push_back(appFolder() + "/" + name);
    }
  }
  return paths;
}

std::string fakeJava() {
  return QUORVANE_BIN "/fake_java";
}

std::vector<std::string> endedTexts(const std::string& bytes) {
  std::vector<std::string> texts;
  size_t position = 0;
  while (position < bytes.size()) {
    const size_t end = bytes.find('\0', position);
    EXPECT_NE(std::string::npos, end) << "the last text is not ended";
    texts.push_back(bytes.substr(position, end - position));
    position = end == std::string::npos ? bytes.size() : end + 1;
  }
  return texts;
}

std::vector<std::string> propertyTexts(const std::string& bytes) {
  return endedTexts(field(bytes));
}

std::string propertyIn(const std::vector<std::string>& texts, const std::string& key) {
  for (size_t i = 0; i + 1 < texts.size(); i += 2) {
    if (texts[i] == key) {
      return texts[i + 1];
    }
  }
  return "(none)";
}

void makeUnopenable(const std::string& path) {
  const std::filesystem::path target(path);
  std::filesystem::create_directories(target.parent_path());
  // A socket's path has little room, so it is bound under a short name in its own folder.
  const int here = ::open(".", O_RDONLY);
  const std::string name = "s";
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  memcpy(address.sun_path, name.c_str(), name.size() + 1);
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(0, ::chdir(target.parent_path().c_str()));
  EXPECT_EQ(0, ::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address));
  EXPECT_EQ(0, ::rename(name.c_str(), target.filename().c_str()));
  ASSERT_EQ(0, ::fchdir(here));
  ::close(socket);
  ::close(here);
}

}  // namespace test
