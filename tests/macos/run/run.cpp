#include "tests/macos/run/run.h"

#include "tests/macos/run/cocoa/objc_image.h"
#include "tests/macos/run/supply/imports.h"
#include "tests/macos/run/unwind/unwind.h"

namespace macrun {

static std::string executable;
static Image image;

const char* executablePath() {
  return executable.c_str();
}

void setExecutablePath(const std::string& path) {
  executable = path;
}

const Image& loadedImage() {
  return image;
}

void loadExecutable(const char* path) {
  ExecutableFile file = openExecutable(path);
  image = readLoadCommands(file);
  mapSegments(image, file);
  rebase(image, file);
  bind(image, file);
  closeExecutable(file);
}

void makeReady() {
  refuseMissingClasses();
  registerObjc(image);
  registerUnwinding(image);
  protectSegments(image);
}

}  // namespace macrun
