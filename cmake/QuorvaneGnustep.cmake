# Linux: GNUstep's Foundation and AppKit, the system's LibTomCrypt, LibTomMath and Nettle.

# GNUstep's runtime and headers are GCC's; clang would need their paths named and cannot catch an
# NSException with a C++ handler.
find_program(CMAKE_OBJC_COMPILER gcc REQUIRED)
find_program(CMAKE_OBJCXX_COMPILER g++ REQUIRED)
enable_language(OBJC)
enable_language(OBJCXX)

set(QUORVANE_PLATFORM_FOLDERS linux gnustep)

find_program(GNUSTEP_CONFIG gnustep-config REQUIRED)
execute_process(COMMAND "${GNUSTEP_CONFIG}" --variable=GNUSTEP_SYSTEM_HEADERS
                OUTPUT_VARIABLE GNUSTEP_HEADERS OUTPUT_STRIP_TRAILING_WHITESPACE
                COMMAND_ERROR_IS_FATAL ANY)

target_compile_options(quorvane_objcxx INTERFACE
  "$<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:-fexceptions;-fobjc-exceptions;-fno-strict-aliasing;-fconstant-string-class=NSConstantString>")
target_compile_definitions(quorvane_objcxx INTERFACE
  GNUSTEP GNUSTEP_BASE_LIBRARY=1 GNU_GUI_LIBRARY=1 GNU_RUNTIME=1 _NATIVE_OBJC_EXCEPTIONS)
target_include_directories(quorvane_objcxx SYSTEM INTERFACE "${GNUSTEP_HEADERS}")
# Cocoa headers spelt as on a Mac where GNUstep spells or splits them differently.
target_include_directories(quorvane_objcxx INTERFACE "${CMAKE_SOURCE_DIR}/platform/gnustep/include")

target_link_libraries(quorvane_cocoa_libraries INTERFACE gnustep-gui gnustep-base objc)

# Only the JNI headers are needed: the JVM library is opened at run time.
find_program(QUORVANE_JAVAC javac PATHS ENV JAVA_HOME PATH_SUFFIXES bin REQUIRED)
file(REAL_PATH "${QUORVANE_JAVAC}" QUORVANE_JAVA_HOME)
cmake_path(GET QUORVANE_JAVA_HOME PARENT_PATH QUORVANE_JAVA_HOME)
cmake_path(GET QUORVANE_JAVA_HOME PARENT_PATH QUORVANE_JAVA_HOME)
find_path(QUORVANE_JNI_HEADERS jni.h HINTS "${QUORVANE_JAVA_HOME}/include" REQUIRED)
target_include_directories(quorvane_dependencies SYSTEM INTERFACE
  "${QUORVANE_JNI_HEADERS}" "${QUORVANE_JNI_HEADERS}/linux")
target_link_libraries(quorvane_dependencies INTERFACE tomcrypt tommath nettle dl)

quorvane_find_stb()
quorvane_find_libarchive()

# Where programs keep what they can make again, in the home folder.
set(QUORVANE_USER_CACHE .cache/quorvane)

# How an executable is linked that is carried to other machines and uses nothing but the C library.
set(QUORVANE_SELF_CONTAINED_OPTIONS -static)
