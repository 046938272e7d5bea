#include "platform/file_viewer.h"

#include <string>

#include "support/process/start_program.h"

void showInFileViewer(const char* path) {
  const std::string file = path;
  const std::string folder = file.substr(0, file.rfind('/'));
  // The shell finds the program; the folder is a separate argument.
  const char* const words[] = {"sh", "-c", "exec xdg-open \"$1\"", "sh", folder.c_str(), nullptr};
  pid_t child = 0;
  static_cast<void>(startProgram(&child, "/bin/sh", const_cast<char* const*>(words)));
}
