# Builds for macOS. On a Mac this only names the oldest system and the processor, and Xcode's SDK
# is used. Anywhere else the compiler is the one that scripts/build-macos prepares, and the
# frameworks are the declarations under platform/macos-sdk.

set(QUORVANE_MACOS_ARCH x86_64 CACHE STRING "Processor to build for: x86_64 or arm64")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES QUORVANE_MACOS_ARCH)

# No Mac with an arm64 processor runs anything older than 11.0.
if(QUORVANE_MACOS_ARCH STREQUAL "arm64")
  set(CMAKE_OSX_DEPLOYMENT_TARGET 11.0)
else()
  set(CMAKE_OSX_DEPLOYMENT_TARGET 10.13)
endif()

if(CMAKE_HOST_SYSTEM_NAME STREQUAL "Darwin")
  set(CMAKE_OSX_ARCHITECTURES "${QUORVANE_MACOS_ARCH}")
  return()
endif()

set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR "${QUORVANE_MACOS_ARCH}")
set(CMAKE_OSX_SYSROOT "")

set(QUORVANE_MACOS_TOOLS "${CMAKE_CURRENT_LIST_DIR}/../build-macos/tools")
cmake_path(NORMAL_PATH QUORVANE_MACOS_TOOLS)
set(tools "${QUORVANE_MACOS_TOOLS}/${QUORVANE_MACOS_ARCH}")
set(CMAKE_C_COMPILER "${tools}/cc")
set(CMAKE_CXX_COMPILER "${tools}/c++")
set(CMAKE_OBJCXX_COMPILER "${tools}/c++")
set(CMAKE_AR "${tools}/ar")
set(CMAKE_RANLIB "${tools}/ranlib")
foreach(tool install_name_tool)
  string(TOUPPER "${tool}" variable)
  string(REPLACE "_" "-" llvm_tool "llvm-${tool}")
  set(CMAKE_${variable} "${QUORVANE_MACOS_TOOLS}/llvm/${llvm_tool}")
endforeach()

set(CMAKE_FIND_ROOT_PATH "${CMAKE_CURRENT_LIST_DIR}/../platform/macos-sdk")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The compiler keeps its own cache of results.
set(QUORVANE_CCACHE "" CACHE FILEPATH "Not used by this build")
