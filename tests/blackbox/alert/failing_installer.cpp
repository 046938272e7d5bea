#include "tests/blackbox/alert/failing_installer.h"

#include "tests/support/files.h"

InstallerAlert::InstallerAlert() {
  installer_.updater[2] = test::fileRecord(
      "nativesplash.png", test::readFile(QUORVANE_SOURCE "/examples/splash/nativesplash.png"));
}

void InstallerAlert::write() {
  installer_.write();
  putRecorderInto(installer_.executable(), "extractor");
}

void InstallerAlert::writeDamaged() {
  std::string& archive = installer_.application[0];
  archive.resize(archive.size() - 10);
  installer_.application.resize(1);
  write();
}

test::Command InstallerAlert::command(const std::vector<std::string>& words) const {
  test::Command command = installer_.command(words);
  command.unset.clear();
  return command;
}

std::string InstallerAlert::logPath() const {
  const std::vector<std::string> names = test::namesIn(installer_.master("logs"));
  EXPECT_EQ(1u, names.size());
  return names.empty() ? "" : installer_.master("logs/" + names[0]);
}
