# What the tests need beyond that to be compiled and linked for macOS on another system, where they cannot
# be run: GoogleTest from the sources that Debian installs, the libraries that are headers alone, and
# the headers of libarchive and zlib with the names that a Mac's libraries export.

set(tests "${QUORVANE_MACOS_TOOLS}/tests")

# quorvane_google_library(NAME KIND FOLDER SOURCE): GTest::NAME from one file of /usr/src/googletest.
function(quorvane_google_library name kind folder source)
  set(root "${tests}/googletest/${folder}")
  add_library(${name} ${kind} EXCLUDE_FROM_ALL "${root}/src/${source}")
  target_include_directories(${name} PRIVATE "${root}")
  target_include_directories(${name} SYSTEM PUBLIC "${tests}/include")
  target_compile_options(${name} PRIVATE -w -O0)
  add_library(GTest::${name} ALIAS ${name})
endfunction()
quorvane_google_library(gtest STATIC googletest gtest-all.cc)
# The linker takes no main out of a library.
quorvane_google_library(gtest_main OBJECT googletest gtest_main.cc)
target_link_libraries(gtest_main PUBLIC gtest)
quorvane_google_library(gmock STATIC googlemock gmock-all.cc)
target_link_libraries(gmock PUBLIC gtest)

add_library(CLI11::CLI11 INTERFACE IMPORTED)
target_include_directories(CLI11::CLI11 SYSTEM INTERFACE "${tests}/include")
target_include_directories(quorvane_toml SYSTEM INTERFACE "${tests}/include")
target_include_directories(quorvane_stb SYSTEM INTERFACE "${tests}/include/stb")
target_include_directories(quorvane_libarchive SYSTEM INTERFACE "${tests}/include")
target_link_libraries(quorvane_libarchive INTERFACE
  "${CMAKE_SOURCE_DIR}/tests/macos/declarations/libarchive.tbd")
target_include_directories(quorvane_zlib SYSTEM INTERFACE "${tests}/include")
target_link_libraries(quorvane_zlib INTERFACE
  "${CMAKE_SOURCE_DIR}/tests/macos/declarations/libz.tbd")

# The tests use more of the frameworks than the product does.
set(QUORVANE_TEST_DECLARATIONS "${CMAKE_SOURCE_DIR}/tests/macos/declarations")

# Java programs are not made, nor is anything else that would have to be run here; the tests' sources take
# the JDK's place only as a name.
cmake_path(GET QUORVANE_JNI_HEADERS PARENT_PATH QUORVANE_JAVA_HOME)
foreach(made_by_java IN ITEMS pack200-tools pack200-sample test_java sample_app quorvane_updater)
  add_custom_target(${made_by_java})
endforeach()
