#ifndef QUORVANE_TESTS_SUPPORT_ACCOUNT_H
#define QUORVANE_TESTS_SUPPORT_ACCOUNT_H

#include <sys/types.h>

#include <string>

namespace test {

// An account without any right of the superuser's, for whom folder modes and limits hold: nobody's
// when the tests run as the superuser, otherwise the one that they run as.
struct Account {
  uid_t user;
  gid_t group;
};
Account ordinaryAccount();

// Makes this process the account's. To be called in a new process, before its program starts.
void become(const Account& account);

// Gives `path` and all that lies below it to the account; the test fails when that is not possible.
void giveTo(const Account& account, const std::string& path);

// Whether the account can reach `path` through the folders above it.
bool canReach(const Account& account, const std::string& path);

}  // namespace test

#endif
