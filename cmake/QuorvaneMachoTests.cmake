# The tests that run a second time, on the executables that are built for macOS: on Linux with an
# x86-64 processor, each started through tests/macos/run. They are tests of this build as well, named
# macho.SUITE.CASE and labelled "macho"; the preset of that name runs them, the others do not.

set(QUORVANE_MACHO_FOLDER "${CMAKE_SOURCE_DIR}/build-macos/bin")
set(QUORVANE_MACRUN_FOLDER "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}" CACHE PATH
  "Where macrun is, and the library that starts executables through it")
set(QUORVANE_MACHO_NOT_RUN "${CMAKE_SOURCE_DIR}/tests/macos/suites/not_run.txt")
set_property(DIRECTORY "${CMAKE_SOURCE_DIR}" APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${QUORVANE_MACHO_NOT_RUN}")

if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64"
    AND NOT QUORVANE_SANITIZE)
  set(QUORVANE_MACHO_SUITES
    application_launch_test
    cocoa_blackbox_test
    hostile_installer_test
    installer_test
    launcher_bundle_test
    lzma64_test
    prepared_runtime_test
    signature_bits_test
    updater_test)
endif()

# Sets `result` to the GoogleTest filter of the cases of `suite` that can run: all but the listed.
function(quorvane_macho_filter suite result)
  set(filter "*")
  file(STRINGS "${QUORVANE_MACHO_NOT_RUN}" lines REGEX "^${suite}\\.")
  foreach(line IN LISTS lines)
    string(REGEX REPLACE "^${suite}\\.([^ ]+) .*" "\\1" pattern "${line}")
    if(filter STREQUAL "*")
      set(filter "-${pattern}")
    else()
      string(APPEND filter ":${pattern}")
    endif()
  endforeach()
  set(${result} "${filter}" PARENT_SCOPE)
endfunction()

# Where a suite keeps what the programs print that it runs, for the comparison of both builds.
set(QUORVANE_RUN_RECORDS "${CMAKE_BINARY_DIR}/run-records")

# Declares the second run of a suite whose cases take up to so many seconds.
function(quorvane_discover_macho suite seconds)
  quorvane_macho_filter(${suite} filter)
  gtest_discover_tests(${suite}
    TEST_PREFIX "macho.${suite}."
    TEST_FILTER "${filter}"
    TEST_LIST ${suite}_MACHO_TESTS
    DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
    PROPERTIES
      TIMEOUT ${seconds}
      LABELS macho
      ENVIRONMENT "QUORVANE_PRODUCT=${QUORVANE_MACHO_FOLDER}"
      ENVIRONMENT "QUORVANE_RUN_RECORDS=${QUORVANE_RUN_RECORDS}/macos/${suite}"
      ENVIRONMENT "LD_PRELOAD=${QUORVANE_MACRUN_FOLDER}/libmacexec.so"
      ENVIRONMENT "QUORVANE_SIGNATURE_BITS=4"  # each is a start of the executable there
      ENVIRONMENT "MACRUN_TRACE=${QUORVANE_RUN_RECORDS}/trace")
endfunction()
