# Included by scripts/mutate in the build of its mutants: one file of the product is compiled and linked anew
# for each of them, which is quicker without optimisation, and a warning about a mutant is no reason to leave
# it out. What only tests call is compiled as in the development build, from whose cache it comes.
function(quorvane_mutate)
  # Of a library, so that it comes behind the option that makes warnings errors.
  add_library(quorvane_mutants INTERFACE)
  target_compile_options(quorvane_mutants INTERFACE -Wno-error)
  foreach(target quorvane_core quorvane_cocoa extractor)
    quorvane_build_fast(${target})
    target_link_libraries(${target} PRIVATE quorvane_mutants)
  endforeach()
endfunction()
cmake_language(DEFER CALL quorvane_mutate)
