# What each platform builds and links; the only place beside platform/ that tells them apart.
#
#   quorvane_dependencies     libraries that the plain C++ core needs
#   quorvane_objcxx           flags for compiling Objective-C++ files
#   quorvane_cocoa_libraries  libraries that the Cocoa part needs

find_package(Threads REQUIRED)

add_library(quorvane_dependencies INTERFACE)
add_library(quorvane_objcxx INTERFACE)
add_library(quorvane_cocoa_libraries INTERFACE)

if(CMAKE_SYSTEM_NAME STREQUAL "Darwin")
  include(QuorvaneMacos)
else()
  include(QuorvaneGnustep)
endif()
target_link_libraries(quorvane_dependencies INTERFACE Threads::Threads)
