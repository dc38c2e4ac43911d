cmake_minimum_required(VERSION 3.25)

# Fails when a file of src/FOLDER includes a folder that FOLDER does not name as its dependency, or,
# outside adapters, a system header or a platform #if. Run by CTest, one test a folder.
set(standard_headers
  algorithm array atomic bit bitset cassert cctype charconv chrono cmath compare concepts
  condition_variable cstddef cstdint cstdio cstdlib cstring deque exception filesystem fstream
  functional initializer_list iomanip ios iosfwd iostream istream iterator limits list map memory mutex
  new numeric optional ostream queue random ranges set span sstream stack stdexcept streambuf
  string string_view system_error thread tuple type_traits unordered_map unordered_set utility
  variant vector)
set(library_headers "fmt/.*|nlohmann/.*|CLI/.*|utf8proc\\.h")
if(FOLDER STREQUAL "xml")
  string(APPEND library_headers "|libxml/.*")
endif()
string(REPLACE "," ";" allowed "${ALLOWED}")
list(APPEND allowed "${FOLDER}")

set(faults 0)
file(GLOB files "${SOURCE_DIR}/${FOLDER}/*.h" "${SOURCE_DIR}/${FOLDER}/*.cpp")
foreach(file IN LISTS files)
  file(STRINGS "${file}" lines REGEX "^[ \t]*#[ \t]*(include|if|ifdef|ifndef|elif)")
  file(RELATIVE_PATH shown "${SOURCE_DIR}" "${file}")
  foreach(line IN LISTS lines)
    if(line MATCHES "#[ \t]*include[ \t]+\"(.*)/[^/\"]+\"")
      if(NOT CMAKE_MATCH_1 IN_LIST allowed)
        message(SEND_ERROR "${shown}: ${FOLDER} may not use ${CMAKE_MATCH_1}: ${line}")
        math(EXPR faults "${faults} + 1")
      endif()
    elseif(line MATCHES "#[ \t]*include[ \t]+\"")
      message(SEND_ERROR "${shown}: name the folder in an include: ${line}")
      math(EXPR faults "${faults} + 1")
    elseif(line MATCHES "#[ \t]*include[ \t]+<(.*)>")
      if(NOT SYSTEM AND NOT CMAKE_MATCH_1 IN_LIST standard_headers
         AND NOT CMAKE_MATCH_1 MATCHES "^(${library_headers})$")
        message(SEND_ERROR "${shown}: a system header outside an adapter: ${line}")
        math(EXPR faults "${faults} + 1")
      endif()
    elseif(NOT SYSTEM AND line MATCHES "_WIN32|__linux__|__unix__|_MSC_VER|__MINGW")
      message(SEND_ERROR "${shown}: a platform test outside an adapter: ${line}")
      math(EXPR faults "${faults} + 1")
    endif()
  endforeach()
endforeach()
if(faults GREATER 0)
  message(FATAL_ERROR "${faults} wrong includes in src/${FOLDER}")
endif()
