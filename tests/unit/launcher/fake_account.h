#ifndef QUORVANE_TESTS_UNIT_LAUNCHER_FAKE_ACCOUNT_H
#define QUORVANE_TESTS_UNIT_LAUNCHER_FAKE_ACCOUNT_H

// Makes getpwuid() answer with an account whose home folder is `home`, or with none at all when it
// is null. Until the first call every user has the system's own account.
void setFakeHome(const char* home);

#endif
