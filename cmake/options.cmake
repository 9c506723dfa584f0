# Compiler options of all our own code, through the interface library kivra_options.

add_library(kivra_options INTERFACE)
target_compile_options(
  kivra_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor
                          -Woverloaded-virtual $<$<BOOL:${KIVRA_WERROR}>:-Werror>)

if(CMAKE_UNITY_BUILD)
  # Names of one file are not shadowed in another, and types of a file's own are its own although it
  # is included in one with all the others; the plain build looks for those that are not.
  target_compile_options(kivra_options INTERFACE
                         -Wno-shadow $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
endif()

if(KIVRA_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # clang 14 cannot assemble coroutines with the data that this check puts before functions.
    add_compile_options(-fno-sanitize=function)
  endif()
endif()

if(KIVRA_FUZZ)
  # Coverage for the fuzzers; their own main comes with -fsanitize=fuzzer.
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
