set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(triple x86_64-w64-mingw32)
# With the threads that the tests want. Its thread library (winpthreads) needs calls of Vista.
set(threads posix)
include("${CMAKE_CURRENT_LIST_DIR}/windows.cmake")
