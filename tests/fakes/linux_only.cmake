# What the tests use on Linux alone.

# The product with one file of another platform's in place of this one's, which is never compiled
# together with others.
add_executable(mac_launch_driver mac_launch_driver.mm
  ${CMAKE_SOURCE_DIR}/platform/macos/window_system.mm
  $<TARGET_OBJECTS:quorvane_core>
  "$<FILTER:$<TARGET_OBJECTS:quorvane_cocoa>,EXCLUDE,gnustep/window_system>")
target_link_libraries(mac_launch_driver PRIVATE
  quorvane_objcxx quorvane_cocoa_libraries quorvane_compiler quorvane_dependencies)

add_executable(mac_session_extractor session.cpp
  ${CMAKE_SOURCE_DIR}/extractor/main.cpp
  ${CMAKE_SOURCE_DIR}/platform/macos/display.cpp
  $<TARGET_OBJECTS:quorvane_cocoa>
  "$<FILTER:$<TARGET_OBJECTS:quorvane_core>,EXCLUDE,linux/display>")
target_include_directories(mac_session_extractor PRIVATE
  "${CMAKE_SOURCE_DIR}/tests/unit/platform/macos")
target_link_libraries(mac_session_extractor PRIVATE
  quorvane_compiler quorvane_cocoa_libraries quorvane_dependencies)

# It takes pictures of an X server.
add_executable(splash_driver splash_driver.mm)
target_link_libraries(splash_driver PRIVATE quorvane_objcxx quorvane_core quorvane_cocoa)

# It speaks to GNUstep's applications, as GNUstep's own programs do.
add_executable(url_sender url_sender.mm)
target_link_libraries(url_sender PRIVATE quorvane_objcxx quorvane_cocoa_libraries quorvane_compiler)

# The executables with a recorder of alerts in them, for tests that look at an X server's screen.
foreach(name launcher extractor)
  add_executable(recorded_${name} ${PROJECT_SOURCE_DIR}/${name}/main.cpp alert_recorder.mm)
  set_target_properties(recorded_${name} PROPERTIES ENABLE_EXPORTS ON)
  target_link_libraries(recorded_${name} PRIVATE quorvane_objcxx quorvane_core quorvane_cocoa)
endforeach()

# For Java programs in the launcher and in installers, whose tests need the sender above.
add_library(forwarding_jvm MODULE forwarding_jvm.cpp)
target_link_libraries(forwarding_jvm PRIVATE
  quorvane_compiler quorvane_dependencies ${CMAKE_DL_LIBS})

add_library(main_thread_library MODULE main_thread_library.mm)
target_link_libraries(main_thread_library PRIVATE
  quorvane_objcxx quorvane_cocoa_libraries quorvane_compiler quorvane_dependencies)

# These are preloaded, in ways that only Linux has.
add_library(sigpipe_as_it_was MODULE sigpipe_as_it_was.cpp)
target_link_libraries(sigpipe_as_it_was PRIVATE ${CMAKE_DL_LIBS})

add_library(jumping_clock MODULE jumping_clock.cpp)
target_link_libraries(jumping_clock PRIVATE ${CMAKE_DL_LIBS})

add_library(fault_injector MODULE
  faults/files.cpp
  faults/memory.cpp
  faults/plan.cpp
  faults/processes.cpp
  faults/streams.cpp
)
target_include_directories(fault_injector PRIVATE ${PROJECT_SOURCE_DIR})
# It defines what the fortified headers would.
target_compile_options(fault_injector PRIVATE -U_FORTIFY_SOURCE)
target_link_libraries(fault_injector PRIVATE ${CMAKE_DL_LIBS})
