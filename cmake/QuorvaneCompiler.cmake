# The language, the warnings and the sanitizers that every target of this project shares.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_OBJCXX_STANDARD 17)
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

find_program(QUORVANE_CCACHE ccache)
if(QUORVANE_CCACHE)
  # Cached results are shared between checkouts, wherever they are; precompiled headers are cached too.
  set(launcher ${CMAKE_COMMAND} -E env
    CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1
    CCACHE_SLOPPINESS=pch_defines,time_macros ${QUORVANE_CCACHE})
  set(CMAKE_C_COMPILER_LAUNCHER ${launcher})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher})
  set(CMAKE_OBJCXX_COMPILER_LAUNCHER ${launcher})
endif()
# How the compiler lets ccache see which precompiled header a file takes.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  set(QUORVANE_PCH_OPTIONS -fpch-preprocess)
endif()

add_library(quorvane_compiler INTERFACE)
target_include_directories(quorvane_compiler INTERFACE "${CMAKE_SOURCE_DIR}")
target_compile_definitions(quorvane_compiler INTERFACE _FILE_OFFSET_BITS=64)
target_compile_options(quorvane_compiler INTERFACE -Wall -Wextra -Wformat=2 -Wvla -Werror)
if(QUORVANE_SANITIZE)
  target_compile_options(quorvane_compiler INTERFACE
    -fsanitize=${QUORVANE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g1)
  target_link_options(quorvane_compiler INTERFACE -fsanitize=${QUORVANE_SANITIZE})
else()
  target_compile_options(quorvane_compiler INTERFACE
    "$<$<AND:$<CONFIG:Release,RelWithDebInfo>,$<NOT:$<BOOL:$<TARGET_PROPERTY:QUORVANE_UNOPTIMISED>>>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>"
    -fstack-protector-strong)
endif()

if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # It means types of unnamed namespaces in headers, and here every test file is included.
  target_compile_options(quorvane_compiler INTERFACE
    "$<$<COMPILE_LANGUAGE:CXX>:-Wno-subobject-linkage>")
endif()

# Plain C++ files are compiled with Cocoa's type names poisoned: including a Cocoa header, or
# naming one of its types, is a compile error outside the .mm files.
add_library(quorvane_plain_cpp INTERFACE)
target_compile_options(quorvane_plain_cpp INTERFACE
  "$<$<AND:$<COMPILE_LANGUAGE:CXX>,$<NOT:$<BOOL:$<TARGET_PROPERTY:QUORVANE_PRECOMPILED>>>>:SHELL:-include ${CMAKE_SOURCE_DIR}/platform/no_cocoa.h>")
