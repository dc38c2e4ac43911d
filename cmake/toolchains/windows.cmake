# Cross-building for Windows with Debian's mingw-w64. Included by the file of each processor, which
# sets `triple`, and `threads`: the flavour of the C++ library.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_C_COMPILER ${triple}-gcc-${threads})
set(CMAKE_CXX_COMPILER ${triple}-g++-${threads})
set(CMAKE_RC_COMPILER ${triple}-windres)
# One file that needs no run-time library beside it.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")

# Nothing of the host is taken for a library of the target.
set(CMAKE_FIND_ROOT_PATH /usr/${triple})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
