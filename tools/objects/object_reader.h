#ifndef QUORVANE_TOOLS_OBJECTS_OBJECT_READER_H
#define QUORVANE_TOOLS_OBJECTS_OBJECT_READER_H

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tools/objects/target.h"

// Programs and libraries in machine code: ELF, Mach-O, and fat files of several Mach-O parts. Only
// their headers are read, which may be those of any file.

namespace tools {

// A version of macOS as Mach-O files write it: 16 bits major, 8 minor, 8 patch. 0 is none.
using SystemVersion = uint32_t;

// Returns "10.13" or "11.0.1"; empty for 0.
[[nodiscard]] std::string systemVersionText(SystemVersion version);

// What one part of such a file is for.
struct ObjectPart {
  std::optional<Target> target;  // nothing for another system or processor
  std::string text;              // the target's, or what else it is for
  SystemVersion minimumSystem = 0;
  bool isProgram = false;  // it can be executed
  bool isLibrary = false;  // it can be loaded; an ELF file can be both
};

// Returns at most `size` bytes from `offset`, fewer at the end of the file.
using ByteSource = std::function<std::string(uint64_t offset, size_t size)>;

// Returns the parts of a file: one for ELF and Mach-O, one for each processor of a fat file, none
// for any other file. Throws InputError, without the file's name, if it begins like one of them and
// is damaged.
[[nodiscard]] std::vector<ObjectPart> readObject(const ByteSource& source);

// The same for `length` bytes from `offset` in the file `path`, and for a whole file. The error
// names the file as `name`, or as `path`.
[[nodiscard]] std::vector<ObjectPart> readObjectIn(const std::string& path, uint64_t offset,
                                                   uint64_t length, const std::string& name);
[[nodiscard]] std::vector<ObjectPart> readObjectFile(const std::string& path);

}  // namespace tools

#endif
