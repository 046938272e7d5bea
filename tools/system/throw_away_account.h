#ifndef QUORVANE_TOOLS_SYSTEM_THROW_AWAY_ACCOUNT_H
#define QUORVANE_TOOLS_SYSTEM_THROW_AWAY_ACCOUNT_H

#include <string>
#include <vector>

namespace tools {

// A temporary home folder to try an installer in, and the environment that makes a program use it.
// The product gets the home folder from the password database, which nss_wrapper replaces.
class ThrowAwayAccount {
 public:
  // Creates the account's files in the folder `folder`, which must have a short path: the window
  // toolkit keeps sockets there. Throws InputError if nss_wrapper is not installed.
  explicit ThrowAwayAccount(const std::string& folder);
  // Ends processes that the account's programs left in the background.
  ~ThrowAwayAccount();
  ThrowAwayAccount(const ThrowAwayAccount&) = delete;
  ThrowAwayAccount& operator=(const ThrowAwayAccount&) = delete;

  const std::string& home() const { return home_; }

  // This process's environment with the variables that make a program use the account, as
  // NAME=value texts.
  std::vector<std::string> environment() const;

 private:
  std::string folder_;
  std::string home_;
  std::string temporary_;
};

}  // namespace tools

#endif
