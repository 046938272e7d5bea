#ifndef QUORVANE_TOOLS_JAVA_JDK_H
#define QUORVANE_TOOLS_JAVA_JDK_H

#include <string>
#include <vector>

// The JDK of the packaging machine: its jar, jdeps and jlink.

namespace tools {

class Jdk {
 public:
  // Uses the JDK in the folder `home`; if empty the one that JAVA_HOME names, else the one whose
  // jlink is on the PATH. Throws InputError if there is none.
  static Jdk find(const std::string& home);

  const std::string& home() const { return home_; }

  // The first number of the JDK's version, or an empty text if its file "release" has none.
  std::string featureVersion() const;

  // Whether the JDK has the module `name`.
  bool hasModule(const std::string& name) const;

  // Runs one of its programs in the folder `folder` and returns its standard output. Throws
  // InputError with the program's own message.
  std::string run(const std::string& program, std::vector<std::string> arguments,
                  const std::string& folder = "/") const;

 private:
  explicit Jdk(std::string home) : home_(std::move(home)) {}

  std::string home_;
};

// Returns the value of `key` in the file "release" of the Java home `home`, without its quotes, or
// an empty text.
std::string releaseValue(const std::string& home, const std::string& key);

}  // namespace tools

#endif
