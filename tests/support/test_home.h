#ifndef QUORVANE_TESTS_SUPPORT_TEST_HOME_H
#define QUORVANE_TESTS_SUPPORT_TEST_HOME_H

#include <map>
#include <string>

#include "tests/support/account.h"
#include "tests/support/temp_folder.h"

namespace test {

// A fresh account for the process under test: a home folder of its own that the password database
// names (through nss_wrapper, since HOME is not what the product reads), and a temporary folder of
// its own, where the window toolkit keeps its ports.
class TestHome {
 public:
  TestHome();
  ~TestHome();

  const std::string& path() const { return home_; }
  std::string operator/(const std::string& name) const { return home_ + "/" + name; }

  // The folder in which a per-user application's master folder lies.
  std::string applicationSupport() const { return home_ + "/Library/Application Support"; }

  // Ends the toolkit's name server where one was started for this account.
  void endNameServer() const;

  // Makes it the account's home, with all that it holds.
  void becomeHomeOf(const Account& account) const;

  // The environment that makes a program use this account.
  std::map<std::string, std::string> environment() const;

 private:
  void writeDatabase(const Account& account) const;

  TempFolder folder_;
  std::string home_;
  std::string tmp_;
};

}  // namespace test

#endif
