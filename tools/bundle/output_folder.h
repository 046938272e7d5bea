#ifndef QUORVANE_TOOLS_BUNDLE_OUTPUT_FOLDER_H
#define QUORVANE_TOOLS_BUNDLE_OUTPUT_FOLDER_H

#include <string>
#include <vector>

namespace tools {

// A file in an output folder that lists what the packager made there.
constexpr char OUTPUT_LIST[] = ".quorvane-output";

// A folder that the packager writes its results to, all or none.
class OutputFolder {
 public:
  // Uses the folder `path`, created if missing. Throws InputError if it contains something that an
  // earlier build did not make, or cannot be written to.
  explicit OutputFolder(const std::string& path);
  // Removes what was not finished.
  ~OutputFolder();
  OutputFolder(const OutputFolder&) = delete;
  OutputFolder& operator=(const OutputFolder&) = delete;

  // The folder where results are while they are being made, and the path of `name` in it.
  std::string unfinished() const;
  std::string operator/(const std::string& name) const { return unfinished() + "/" + name; }

  // The path of `name` once it is finished.
  std::string finalPath(const std::string& name) const { return path_ + "/" + name; }

  // Replaces the results of an earlier build, which are kept on failure. With SOURCE_DATE_EPOCH in
  // the environment every file and folder gets that time. Throws InputError.
  void finish();

 private:
  void exchange(const std::vector<std::string>& earlier,
                const std::vector<std::string>& made) const;
  void takeBack(const std::vector<std::string>& earlier,
                const std::vector<std::string>& made) const noexcept;
  void restoreReplaced() const;

  std::string path_;
};

// Returns the names of what the packager made in the folder `path`; none if it made nothing.
std::vector<std::string> madeIn(const std::string& path);

}  // namespace tools

#endif
