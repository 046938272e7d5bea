#ifndef QUORVANE_TESTS_BLACKBOX_INSTALLER_DISTURBED_H
#define QUORVANE_TESTS_BLACKBOX_INSTALLER_DISTURBED_H

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "tests/blackbox/installer/launcher_only.h"

// A call of the Extractor's that fails, once or from then on, or at which the process dies (see
// tests/fakes/faults/plan.cpp).
struct Fault {
  const char* name;
  const char* kind;
  const char* action;
};

std::ostream& operator<<(std::ostream& out, const Fault& fault);

// What is installed, what the disturbed run installs over it, and what has to hold after that.
class Disturbed : public testing::TestWithParam<Fault> {
 protected:
  // What is installed before the disturbed run, and what the next undisturbed one must start, as
  // version folders; `kept` is never to be lost, with what a user has put there, `made` must be
  // there in the end. `words` are the disturbed run's arguments; where there are any, an
  // undisturbed run with them comes before the next one. What cannot start before, `damaged`, may
  // stay so until then.
  struct Scene {
    std::string oldUpdater;  // empty for a first installation
    std::string newUpdater;
    std::string newRuntime;
    std::string oldRuntime;  // may still be used once the new updater is installed
    std::vector<std::string> kept;
    std::vector<std::string> made;
    std::vector<std::string> words = {};
    std::string damaged = "";
  };

  virtual ~Disturbed() = default;

  // Keeps the state before the disturbed run.
  void keepState(const Scene& scene);

  // Disturbs the run at points spread over all calls of the kind, one after the other.
  void disturbAll();

  test::Installer installer_;

 private:
  struct Counts {
    uint64_t met = 0;
    uint64_t hit = 0;
  };

  void addFilesOfTheUser() const;
  void expectFilesOfTheUser() const;
  void reset();
  test::Result runWith(uint64_t point);
  Counts readCounts() const;
  uint64_t countPoints();
  void disturbAt(uint64_t point);
  bool isInstalled(const std::string& start) const;
  void expectNothingBroken(const std::string& damaged = "");
  void expectInstalledStarts();
  void repeatRequest();
  void expectNextRunFinishes();

  Scene scene_;
  uint64_t withOldRuntime_ = 0;
};

#endif
