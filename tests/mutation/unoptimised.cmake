# Included by scripts/mutate in the build of its mutants, which is made once and compiles faster without
# optimisation. A warning about a mutant is no reason to leave it out. What only tests call is compiled as in the
# development build, from whose cache it comes.
function(quorvane_mutate)
  # Of a library, so that it comes behind the option that makes warnings errors.
  add_library(quorvane_mutants INTERFACE)
  target_compile_options(quorvane_mutants INTERFACE -w)
  foreach(target quorvane_core quorvane_cocoa extractor splash_test)
    quorvane_build_fast(${target})
    target_link_libraries(${target} PRIVATE quorvane_mutants)
  endforeach()
endfunction()
cmake_language(DEFER CALL quorvane_mutate)
