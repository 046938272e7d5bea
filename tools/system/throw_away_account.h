#ifndef QUORVANE_TOOLS_SYSTEM_THROW_AWAY_ACCOUNT_H
#define QUORVANE_TOOLS_SYSTEM_THROW_AWAY_ACCOUNT_H

#include <string>
#include <vector>

namespace tools {

// A home folder to try an installer in, and the environment in which a program takes it for its
// user's own. The product asks the password database for the home folder, so nss_wrapper answers in
// its place.
class ThrowAwayAccount {
 public:
  // Makes the account's files in the folder `folder`, which must have a short path: the window
  // toolkit keeps sockets there. Throws InputError when there is no nss_wrapper on this system.
  explicit ThrowAwayAccount(const std::string& folder);
  // Ends what the account's programs left running in the background.
  ~ThrowAwayAccount();
  ThrowAwayAccount(const ThrowAwayAccount&) = delete;
  ThrowAwayAccount& operator=(const ThrowAwayAccount&) = delete;

  const std::string& home() const { return home_; }

  // This process's environment with what makes a program use the account, as NAME=value texts.
  std::vector<std::string> environment() const;

 private:
  std::string folder_;
  std::string home_;
  std::string temporary_;
};

}  // namespace tools

#endif
