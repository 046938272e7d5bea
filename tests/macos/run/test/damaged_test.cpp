// Files that no compiler has made: each is refused, with a message, before any of its code runs.

#include <cstring>
#include <functional>

#include "tests/macos/run/image/mach_o.h"
#include "tests/macos/run/test/guest.h"
#include "tests/support/files.h"

using macrun::DyldInfoCommand;
using macrun::FileHeader;
using macrun::LoadCommand;
using macrun::SegmentCommand;

// A Mach-O file's bytes, read and changed in place.
class Bytes {
 public:
  explicit Bytes(std::string bytes) : bytes_(std::move(bytes)) {}

  template <class T>
  T* at(size_t offset) {
    return reinterpret_cast<T*>(bytes_.data() + offset);
  }

  FileHeader* header() { return at<FileHeader>(0); }

  // The load command of that kind, `skipped` ones passed over.
  template <class T>
  T* command(uint32_t kind, int skipped = 0) {
    size_t offset = sizeof(FileHeader);
    for (uint32_t i = 0; i < header()->commandCount; ++i) {
      if (at<LoadCommand>(offset)->kind == kind && skipped-- == 0) {
        return at<T>(offset);
      }
      offset += at<LoadCommand>(offset)->size;
    }
    ADD_FAILURE() << "no load command " << kind;
    return nullptr;
  }

  SegmentCommand* segment(int index) { return command<SegmentCommand>(macrun::kSegment64, index); }

  DyldInfoCommand* fixups() { return command<DyldInfoCommand>(macrun::kDyldInfoOnly); }

  // Puts `code` in place of the opcodes of a table.
  void replace(const macrun::Range& table, const std::string& code) {
    ASSERT_LE(code.size(), table.size);
    memcpy(at<char>(table.offset), code.data(), code.size());
  }

  std::string& text() { return bytes_; }

 private:
  std::string bytes_;
};

class Damaged : public test::Guest {
 protected:
  // Runs the guest after `change`; it has to be refused with a message that holds `reason`.
  void expectRefused(const std::string& reason, const std::function<void(Bytes&)>& change) {
    Bytes bytes(test::readFile(build("fixups.cpp")));
    change(bytes);
    const std::string file = folder_ / "damaged";
    test::writeFile(file, bytes.text(), 0755);
    const test::Result result = runGuest({file, "square"});
    EXPECT_EQ(126, result.status) << "signal " << result.signal;
    EXPECT_EQ(0u, result.err.find("macrun: ")) << result.err;
    EXPECT_NE(std::string::npos, result.err.find(reason)) << result.err;
    EXPECT_EQ("", result.out);
  }
};

TEST_F(Damaged, AnEmptyFileIsRefused) {
  expectRefused("not a Mach-O file", [](Bytes& bytes) { bytes.text().clear(); });
}

TEST_F(Damaged, ATruncatedHeaderIsRefused) {
  expectRefused("outside", [](Bytes& bytes) { bytes.text().resize(20); });
}

TEST_F(Damaged, LoadCommandsBeyondTheEndAreRefused) {
  expectRefused("outside", [](Bytes& bytes) { bytes.text().resize(200); });
  expectRefused("outside", [](Bytes& bytes) { bytes.header()->commandSize = 0xFFFFFFF0; });
  expectRefused("outside", [](Bytes& bytes) { bytes.header()->commandCount += 1; });
}

TEST_F(Damaged, ALoadCommandOfNoSizeIsRefused) {
  for (uint32_t size : {0u, 4u, 71u}) {
    expectRefused("has a size of",
                  [&](Bytes& bytes) { bytes.at<LoadCommand>(sizeof(FileHeader))->size = size; });
  }
}

TEST_F(Damaged, AnotherProcessorOrKindOfFileIsRefused) {
  expectRefused("another processor", [](Bytes& bytes) { bytes.header()->processor = 0x0100000C; });
  expectRefused("not an executable", [](Bytes& bytes) { bytes.header()->fileType = 6; });
  expectRefused("not a Mach-O file", [](Bytes& bytes) { bytes.header()->magic = 0x464C457F; });
}

TEST_F(Damaged, SegmentsOutsideTheFileOrTheAddressSpaceAreRefused) {
  expectRefused("outside", [](Bytes& bytes) { bytes.segment(1)->fileSize = 1 << 30; });
  expectRefused("outside", [](Bytes& bytes) { bytes.segment(1)->fileOffset = ~uint64_t{0}; });
  expectRefused("outside the address space",
                [](Bytes& bytes) { bytes.segment(2)->address = ~uint64_t{0xFFF}; });
  expectRefused("larger in the file", [](Bytes& bytes) { bytes.segment(1)->memorySize = 16; });
  expectRefused("start at a page", [](Bytes& bytes) { bytes.segment(1)->address += 8; });
  expectRefused("before the end",
                [](Bytes& bytes) { bytes.segment(2)->address = bytes.segment(1)->address; });
  expectRefused("of memory", [](Bytes& bytes) { bytes.segment(4)->address = uint64_t{1} << 40; });
}

TEST_F(Damaged, ASectionOutsideItsSegmentIsRefused) {
  expectRefused("outside its segment", [](Bytes& bytes) {
    reinterpret_cast<macrun::Section*>(bytes.segment(1) + 1)->size = ~uint64_t{0};
  });
  expectRefused("ends too early", [](Bytes& bytes) { bytes.segment(1)->sectionCount = 1000; });
}

TEST_F(Damaged, AnEntryPointOutsideTheCodeIsRefused) {
  for (uint64_t offset : {uint64_t{0}, uint64_t{1} << 40}) {
    expectRefused("entry point", [&](Bytes& bytes) {
      bytes.command<macrun::MainCommand>(macrun::kMain)->entryOffset = offset;
    });
  }
}

TEST_F(Damaged, ALibraryNameWithoutAnEndIsRefused) {
  expectRefused("outside", [](Bytes& bytes) {
    bytes.command<macrun::LibraryCommand>(macrun::kLoadLibrary)->nameOffset = 4000;
  });
  expectRefused("has no end", [](Bytes& bytes) {
    auto* library = bytes.command<macrun::LibraryCommand>(macrun::kLoadLibrary);
    memset(reinterpret_cast<char*>(library) + library->nameOffset, 'x',
           library->size - library->nameOffset);
  });
}

TEST_F(Damaged, FixupTablesOutsideTheFileAreRefused) {
  expectRefused("outside", [](Bytes& bytes) { bytes.fixups()->binds.offset = 0xFFFFFFFF; });
  expectRefused("outside", [](Bytes& bytes) { bytes.fixups()->rebases.size = 0xFFFFFFFF; });
}

TEST_F(Damaged, RebasesOutsideTheSegmentsAreRefused) {
  const auto rebase = [](const std::string& code) {
    return [code](Bytes& bytes) { bytes.replace(bytes.fixups()->rebases, code); };
  };
  expectRefused("segment 15 of", rebase(std::string("\x11\x2F\x00", 3)));
  expectRefused("may be written to", rebase(std::string("\x11\x21\x00\x51", 4)));  // the code
  expectRefused("may be written to", rebase("\x11\x22\xFF\xFF\xFF\xFF\x0F\x51"));
  expectRefused("may be written to",
                rebase(std::string("\x11\x23\x00\x60\xFF\xFF\xFF\xFF\x7F", 9)));
  expectRefused("unknown opcode 0xf0", rebase("\xF0"));
  expectRefused("of type 2", rebase("\x12"));
}

TEST_F(Damaged, ARepeatedFixupThatNeverEndsIsRefused) {
  // From the start of the data, again and again 8 bytes on and 8 back.
  const std::string code(
      "\x11\x23\x00\x80\xFF\xFF\xFF\xFF\x0F\xF8\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x01", 19);
  expectRefused("skips", [&](Bytes& bytes) { bytes.replace(bytes.fixups()->rebases, code); });
}

TEST_F(Damaged, BindsThatMakeNoSenseAreRefused) {
  const auto bind = [](const std::string& code) {
    return [code](Bytes& bytes) { bytes.replace(bytes.fixups()->binds, code); };
  };
  expectRefused("unknown opcode 0xd0", bind("\xD0"));
  expectRefused("segment 14 of", bind(std::string("\x7E\x00", 2)));
  expectRefused("has no symbol", bind(std::string("\x11\x51\x73\x00\x90", 5)));
  expectRefused("library 15 of", bind(std::string("\x1F\x40_x\x00\x51\x73\x00\x90", 9)));
  expectRefused("may be written to", bind(std::string("\x11\x40_x\x00\x51\x71\x00\x90", 9)));
}

TEST_F(Damaged, ATableThatEndsInTheMiddleIsRefused) {
  expectRefused("ends too early", [](Bytes& bytes) {
    bytes.replace(bytes.fixups()->binds, "\x73\xFF");
    bytes.fixups()->binds.size = 2;
  });
  expectRefused("has no end", [](Bytes& bytes) {
    bytes.replace(bytes.fixups()->binds, "\x40_xyz");
    bytes.fixups()->binds.size = 5;
  });
}

TEST_F(Damaged, WhatTheRunnerDoesNotHaveIsNamed) {
  expectRefused("chained fixups", [](Bytes& bytes) {
    bytes.command<LoadCommand>(macrun::kDyldInfoOnly)->kind = macrun::kChainedFixups;
  });
  expectRefused("load command 0x800000ff", [](Bytes& bytes) {
    bytes.command<LoadCommand>(macrun::kDyldInfoOnly)->kind = 0x800000FF;
  });
}

TEST_F(Damaged, AFatFileWithoutAPartForThisProcessorIsRefused) {
  expectRefused("no part for x86-64", [](Bytes& bytes) {
    bytes.text() =
        std::string("\xCA\xFE\xBA\xBE\0\0\0\1\1\0\0\xC\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\xE", 28);
  });
  expectRefused("ends too early", [](Bytes& bytes) {
    bytes.text() = std::string("\xCA\xFE\xBA\xBE\xFF\xFF\xFF\xFF\1\0\0\xC\0\0\0\0", 16);
  });
  expectRefused("outside", [](Bytes& bytes) {
    bytes.text() = std::string(
        "\xCA\xFE\xBA\xBE\0\0\0\1\1\0\0\7\0\0\0\0\xFF\xFF\xF0\0\xFF\0\0\0\0\0\0\xE", 28);
  });
}

TEST_F(Damaged, UnwindingThatLiesOutsideIsRefused) {
  expectRefused("__unwind_info", [](Bytes& bytes) {
    SegmentCommand* segment = bytes.segment(1);
    auto* section = reinterpret_cast<macrun::Section*>(segment + 1);
    while (strncmp(section->name, "__unwind_info", 16) != 0) {
      ++section;
    }
    *bytes.at<uint32_t>(section->offset + 20) = 0x7FFFFFFF;  // where the index starts
  });
}

TEST_F(Damaged, AMissingFileIsNamed) {
  const test::Result result = runGuest({"/nonexistent/program"});
  EXPECT_EQ(126, result.status);
  EXPECT_EQ("macrun: /nonexistent/program: No such file or directory\n", result.err);
}
