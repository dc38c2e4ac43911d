# Warnings are errors in every build of ours.
add_library(zent_warnings INTERFACE)
target_compile_options(zent_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor
  -Woverloaded-virtual -Wold-style-cast -Wnull-dereference -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC 12 sees null pointers and overlaps inside its own inlined library code.
  target_compile_options(zent_warnings INTERFACE
    -Wno-null-dereference -Wno-restrict -Wno-error=maybe-uninitialized)
endif()
