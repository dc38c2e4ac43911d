# zent_windows_program(TARGET)
#
# How a program for Windows is linked, and where its file goes: it runs on Windows 2000 (x86) and on
# the first 64-bit systems, may lie anywhere in memory, and runs no data.
function(zent_windows_program program)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(oldest 5 2)
  else()
    set(oldest 5 0)
  endif()
  list(GET oldest 0 major)
  list(GET oldest 1 minor)
  target_link_options(${program} PRIVATE
    -municode -s -Wl,--gc-sections -Wl,--dynamicbase -Wl,--nxcompat
    -Wl,--major-subsystem-version,${major} -Wl,--minor-subsystem-version,${minor}
    -Wl,--major-os-version,${major} -Wl,--minor-os-version,${minor})
  set_target_properties(${program} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}")
endfunction()
