# What a build for macOS needs on another system: the framework declarations of this project, the
# JNI header of the JDK that is installed here, and the two libraries from their sources, which
# scripts/build-macos has laid out.

target_compile_options(quorvane_compiler INTERFACE
  -isystem "${QUORVANE_MACOS_SDK}/include" -iframework "${QUORVANE_MACOS_SDK}/Frameworks")
# zig names the language of a .mm file a second time, in a way that its own clang does not need.
target_compile_options(quorvane_objcxx INTERFACE -Wno-unused-command-line-argument)
target_link_options(quorvane_cocoa_libraries INTERFACE
  -F "${QUORVANE_MACOS_SDK}/Frameworks" -L "${QUORVANE_MACOS_SDK}/lib")
target_link_options(quorvane_dependencies INTERFACE -F "${QUORVANE_MACOS_SDK}/Frameworks")

# zig leaves segments unrounded and more records than one about the Objective-C, and makes no bundles: a module is a dynamic library here.
foreach(language IN ITEMS CXX OBJCXX)
  list(APPEND CMAKE_${language}_LINK_EXECUTABLE
    "\"${CMAKE_SOURCE_DIR}/cmake/finish_executable.py\" <TARGET>")
  set(CMAKE_SHARED_MODULE_CREATE_${language}_FLAGS -dynamiclib)
endforeach()

# zig drops what nothing calls from an optimised program; Apple's linker does not unless asked, and
# every exported name is to stay.
target_link_options(quorvane_compiler INTERFACE -Wl,--no-gc-sections)

# jni.h is the same for every system; what differs is jni_md.h.
file(READ "${QUORVANE_MACOS_TOOLS}/jni_headers" QUORVANE_JNI_HEADERS)
string(STRIP "${QUORVANE_JNI_HEADERS}" QUORVANE_JNI_HEADERS)
target_include_directories(quorvane_dependencies SYSTEM INTERFACE
  "${QUORVANE_MACOS_SDK}/include" "${QUORVANE_JNI_HEADERS}")

# The objects that the library's own makefile names; some of its .c files are included by others,
# and aes_enc is aes.c once more, for encryption alone.
function(quorvane_c_library name folder makefile)
  file(READ "${folder}/${makefile}" text)
  string(REGEX MATCH "\nOBJECTS=([^\n]*\\\\\n)*[^\n]*" objects "${text}")
  string(REGEX MATCHALL "[A-Za-z0-9_/]+\\.o" objects "${objects}")
  list(FILTER objects EXCLUDE REGEX "/aes_enc\\.o$")
  list(TRANSFORM objects REPLACE "\\.o$" ".c")
  list(TRANSFORM objects PREPEND "${folder}/")
  add_library(${name} STATIC EXCLUDE_FROM_ALL ${objects})
  target_compile_options(${name} PRIVATE -w -fvisibility=hidden "-ffile-prefix-map=${folder}/=")
endfunction()

set(sources "${QUORVANE_MACOS_TOOLS}/sources")
quorvane_c_library(tommath "${sources}/libtommath" makefile.unix)
target_include_directories(tommath SYSTEM PUBLIC "${sources}/libtommath")
quorvane_c_library(tomcrypt "${sources}/libtomcrypt" makefile_include.mk)
target_include_directories(tomcrypt SYSTEM PUBLIC "${sources}/libtomcrypt/src/headers")
target_compile_definitions(tomcrypt PRIVATE LTC_SOURCE USE_LTM LTM_DESC)
target_link_libraries(tomcrypt PUBLIC tommath)
target_link_libraries(quorvane_dependencies INTERFACE tomcrypt tommath)

# Tests and packager tools cannot be run here: they are made only when asked for, to see that they can be.
set(QUORVANE_RUN_ELSEWHERE EXCLUDE_FROM_ALL)
if(QUORVANE_TESTS OR QUORVANE_TOOLS)
  include(QuorvaneMacosCrossTests)
endif()
