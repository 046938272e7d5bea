# How tests are declared. Every test case is a separate CTest test and runs in its own
# process, so that process-wide state never leaks from one into another.

if(NOT TARGET GTest::gtest)
  find_package(GTest REQUIRED)
endif()
include(GoogleTest)
include(QuorvaneMachoTests)

add_library(quorvane_test_support STATIC)
target_link_libraries(quorvane_test_support PUBLIC quorvane_compiler GTest::gtest)
# A test takes from it what it needs, one file at a time: some need the product, some the tools.
set_target_properties(quorvane_test_support PROPERTIES UNITY_BUILD OFF)

set(QUORVANE_TEST_ENVIRONMENT
  "ASAN_OPTIONS=detect_leaks=0:verify_asan_link_order=0:handle_segv=0:allow_user_segv_handler=1"
  "UBSAN_OPTIONS=print_stacktrace=1")

# What only tests call is compiled without optimisation: it builds in half the time.
function(quorvane_build_fast name)
  set_target_properties(${name} PROPERTIES QUORVANE_UNOPTIMISED ON)
  target_compile_options(${name} PRIVATE -O0 -g1)
endfunction()

# The sanitizers ask every test executable for this while they start, so that it is linked as an
# object and not taken out of a library.
add_library(quorvane_sanitizer_options OBJECT tests/support/sanitizer_options.cpp)
target_link_libraries(quorvane_sanitizer_options PRIVATE quorvane_compiler)

# GoogleTest's headers and the standard library's cost a test's unit more than its own text: they are
# compiled once. An executable keeps them, since an object library is compiled as code for libraries,
# and the compiler takes precompiled headers only from the same kind.
add_executable(test_headers tests/support/test_headers.cpp)
quorvane_build_fast(test_headers)
set_target_properties(test_headers PROPERTIES QUORVANE_PRECOMPILED ON)
target_link_libraries(test_headers PRIVATE quorvane_compiler GTest::gtest_main)
target_compile_options(test_headers PRIVATE ${QUORVANE_PCH_OPTIONS})
target_precompile_headers(test_headers PRIVATE
  <gtest/gtest.h> <algorithm> <chrono> <filesystem> <fstream> <functional> <map> <memory> <set> <string>
  <thread> <vector>
  # The compiler takes precompiled headers only from the first header of all, so that this one, the
  # first of all plain C++ files, has to be the last among them.
  "${CMAKE_SOURCE_DIR}/platform/no_cocoa.h")

if(QUORVANE_RUN_ELSEWHERE)
  set_target_properties(quorvane_test_support quorvane_sanitizer_options test_headers PROPERTIES
    EXCLUDE_FROM_ALL ON)
endif()

function(quorvane_use_test_headers name)
  target_compile_options(${name} PRIVATE ${QUORVANE_PCH_OPTIONS})
  set_target_properties(${name} PROPERTIES QUORVANE_PRECOMPILED ON)
  target_precompile_headers(${name} REUSE_FROM test_headers)
  get_target_property(sources ${name} SOURCES)
  list(FILTER sources INCLUDE REGEX "[.]mm$")
  set_source_files_properties(${sources} PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
endfunction()

# QUORVANE_NOT_SANITIZED, set before a test is declared, is a GoogleTest filter of the cases that a
# sanitizer build leaves out; the reason is given where it is set.
function(quorvane_discover name seconds)
  set(filter "*")
  if(QUORVANE_SANITIZE AND QUORVANE_NOT_SANITIZED)
    set(filter "-${QUORVANE_NOT_SANITIZED}")
  endif()
  set(variables ${QUORVANE_TEST_ENVIRONMENT})
  if(name IN_LIST QUORVANE_MACHO_SUITES)
    list(APPEND variables "QUORVANE_RUN_RECORDS=${QUORVANE_RUN_RECORDS}/linux/${name}")
  endif()
  # The property is given once for each variable: it would take no more than one of a list.
  list(TRANSFORM variables PREPEND "ENVIRONMENT;")
  gtest_discover_tests(${name}
    TEST_PREFIX "${name}."
    TEST_FILTER "${filter}"
    DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT ${seconds} ${variables})
  if(name IN_LIST QUORVANE_MACHO_SUITES)
    quorvane_discover_macho(${name} ${seconds})
  endif()
endfunction()

# Seconds that a unit test may take; a list file may set more before it declares its tests.
set(QUORVANE_UNIT_SECONDS 60)

# quorvane_unit_test(NAME SOURCE...): tests that call the library's functions.
function(quorvane_unit_test name)
  add_executable(${name} ${ARGN})
  quorvane_build_fast(${name})
  quorvane_use_test_headers(${name})
  target_link_libraries(${name} PRIVATE
    quorvane_core quorvane_cocoa quorvane_test_support quorvane_sanitizer_options GTest::gtest_main)
  quorvane_discover(${name} ${QUORVANE_UNIT_SECONDS})
endfunction()

# Seconds that a black-box test may take; a list file may set more.
set(QUORVANE_BLACKBOX_SECONDS 180)

# quorvane_blackbox_test(NAME SOURCE...): tests that run built executables; they link none of the
# product. A test finds the executables in QUORVANE_BIN and its data in QUORVANE_SOURCE.
function(quorvane_blackbox_test name)
  add_executable(${name} ${ARGN})
  quorvane_build_fast(${name})
  quorvane_use_test_headers(${name})
  target_link_libraries(${name} PRIVATE
    quorvane_test_support quorvane_sanitizer_options GTest::gtest_main)
  quorvane_discover(${name} ${QUORVANE_BLACKBOX_SECONDS})
endfunction()
