set(CMAKE_SYSTEM_PROCESSOR i686)
set(triple i686-w64-mingw32)
# Without a thread library of its own, which would need calls of Vista: runs on Windows 2000.
set(threads win32)
include("${CMAKE_CURRENT_LIST_DIR}/windows.cmake")
