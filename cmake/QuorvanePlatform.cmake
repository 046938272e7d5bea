# What each platform builds and links; the only place beside platform/ that tells them apart.
#
#   quorvane_dependencies     libraries that the plain C++ core needs
#   quorvane_objcxx           flags for compiling Objective-C++ files
#   quorvane_cocoa_libraries  libraries that the Cocoa part needs
#   quorvane_libarchive       libarchive, for the packager
#   quorvane_zlib             zlib, for the packager
#   quorvane_toml             toml++, which is headers alone, for the packager
#   quorvane_stb              the stb libraries, which are too

find_package(Threads REQUIRED)

add_library(quorvane_dependencies INTERFACE)
add_library(quorvane_objcxx INTERFACE)
add_library(quorvane_cocoa_libraries INTERFACE)
add_library(quorvane_libarchive INTERFACE)
add_library(quorvane_zlib INTERFACE)
add_library(quorvane_toml INTERFACE)
add_library(quorvane_stb INTERFACE)

# Installed headers of stb, which packages put into a folder of its name or beside the others.
macro(quorvane_find_stb)
  find_path(QUORVANE_STB_HEADERS stb_image_resize.h PATH_SUFFIXES stb REQUIRED)
  target_include_directories(quorvane_stb SYSTEM INTERFACE "${QUORVANE_STB_HEADERS}")
endmacro()

# The installed libarchive and zlib.
macro(quorvane_find_libarchive)
  if(QUORVANE_TOOLS)
    find_package(LibArchive REQUIRED)
    target_link_libraries(quorvane_libarchive INTERFACE LibArchive::LibArchive)
    find_package(ZLIB REQUIRED)
    target_link_libraries(quorvane_zlib INTERFACE ZLIB::ZLIB)
  endif()
endmacro()

if(CMAKE_SYSTEM_NAME STREQUAL "Darwin")
  include(QuorvaneMacos)
else()
  include(QuorvaneGnustep)
endif()
target_link_libraries(quorvane_dependencies INTERFACE Threads::Threads)
