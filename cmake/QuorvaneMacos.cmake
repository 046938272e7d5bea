# macOS: Apple's frameworks, and LibTomCrypt and LibTomMath as static libraries, so that the
# executable needs nothing that a Mac does not have.

enable_language(OBJCXX)

set(QUORVANE_PLATFORM_FOLDERS macos)
# Where programs keep what they can make again, in the home folder.
set(QUORVANE_USER_CACHE Library/Caches/Quorvane)
set(QUORVANE_MACOS_SDK "${CMAKE_SOURCE_DIR}/platform/macos-sdk")

# Interfaces that are used although newer systems call them deprecated, because each exists on
# every system since 10.13 and is the required behaviour: NSURLDownload and its delegate messages,
# NSBundle's loadNibFile:externalNameTable:withZone:, activateIgnoringOtherApps:, and the short
# names of the borderless window mask, the source-over operation and the application-defined event.
target_compile_options(quorvane_objcxx INTERFACE -Wno-deprecated-declarations)

# Keeps the paths of the object files out of the result.
target_link_options(quorvane_compiler INTERFACE $<$<CONFIG:Release>:-Wl,-S>)

# Frameworks for the plain C++ core; the rest is for the Cocoa part.
target_link_libraries(quorvane_dependencies INTERFACE "-framework Security")

set(QUORVANE_FRAMEWORKS AppKit Foundation CoreFoundation CoreGraphics)
foreach(framework IN LISTS QUORVANE_FRAMEWORKS)
  target_link_libraries(quorvane_cocoa_libraries INTERFACE "-framework ${framework}")
endforeach()
target_link_libraries(quorvane_cocoa_libraries INTERFACE objc)

if(CMAKE_CROSSCOMPILING)
  include(QuorvaneMacosCross)
else()
  quorvane_find_stb()
  # Homebrew keeps it apart from the system's, which has no headers.
  list(APPEND CMAKE_PREFIX_PATH /opt/homebrew/opt/libarchive /usr/local/opt/libarchive)
  quorvane_find_libarchive()
  find_program(QUORVANE_JAVAC javac PATHS ENV JAVA_HOME PATH_SUFFIXES bin REQUIRED)
  file(REAL_PATH "${QUORVANE_JAVAC}" QUORVANE_JAVA_HOME)
  cmake_path(GET QUORVANE_JAVA_HOME PARENT_PATH QUORVANE_JAVA_HOME)
  cmake_path(GET QUORVANE_JAVA_HOME PARENT_PATH QUORVANE_JAVA_HOME)
  find_path(QUORVANE_JNI_HEADERS jni.h HINTS "${QUORVANE_JAVA_HOME}/include" REQUIRED)
  find_path(QUORVANE_TOMCRYPT_HEADERS tomcrypt.h REQUIRED)
  find_library(QUORVANE_TOMCRYPT libtomcrypt.a REQUIRED)
  find_library(QUORVANE_TOMMATH libtommath.a REQUIRED)
  target_include_directories(quorvane_dependencies SYSTEM INTERFACE
    "${QUORVANE_JNI_HEADERS}" "${QUORVANE_JNI_HEADERS}/darwin" "${QUORVANE_TOMCRYPT_HEADERS}")
  target_link_libraries(quorvane_dependencies INTERFACE
    "${QUORVANE_TOMCRYPT}" "${QUORVANE_TOMMATH}")
endif()
