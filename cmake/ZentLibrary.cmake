# zent_library(FOLDER [SYSTEM] SOURCES file... DEPENDS folder... LINKS target...)
#
# The library of src/FOLDER. DEPENDS names the folders it may use, and nothing else: the CTest test
# layering.FOLDER fails on an include of any other folder, and, unless the folder is an adapter
# (SYSTEM), on a system header or a platform #if.
function(zent_library folder)
  cmake_parse_arguments(ARG "SYSTEM" "" "SOURCES;DEPENDS;LINKS" ${ARGN})
  string(REPLACE "/" "_" name "zent_${folder}")
  set(depends)
  foreach(other IN LISTS ARG_DEPENDS)
    string(REPLACE "/" "_" other "zent_${other}")
    list(APPEND depends ${other})
  endforeach()

  if(ARG_SOURCES)
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}/src"
                                              "${PROJECT_BINARY_DIR}/generated")
    target_link_libraries(${name} PUBLIC ${depends} ${ARG_LINKS} PRIVATE zent_warnings)
    set_target_properties(${name} PROPERTIES UNITY_BUILD ${ZENT_UNITY} UNITY_BUILD_BATCH_SIZE 10)
  else()
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE "${PROJECT_SOURCE_DIR}/src"
                                                 "${PROJECT_BINARY_DIR}/generated")
    target_link_libraries(${name} INTERFACE ${depends} ${ARG_LINKS})
  endif()

  list(JOIN ARG_DEPENDS "," allowed)
  add_test(NAME layering.${folder}
    COMMAND ${CMAKE_COMMAND} -DFOLDER=${folder} -DALLOWED=${allowed} -DSYSTEM=${ARG_SYSTEM}
            -DSOURCE_DIR=${PROJECT_SOURCE_DIR}/src -P ${PROJECT_SOURCE_DIR}/cmake/Layering.cmake)
  set_tests_properties(layering.${folder} PROPERTIES LABELS layering)
endfunction()

# zent_test_options(TARGET)
#
# How the code of tests is compiled: fast, for it is not what is shipped. What is under test is
# optimised and checked for undefined behaviour, the tests' own few lines need neither.
function(zent_test_options target)
  if(WIN32)
    target_compile_options(${target} PRIVATE -O0)
  elseif(ZENT_SANITIZE)
    target_compile_options(${target} PRIVATE -O0 -fno-sanitize=undefined)
  endif()
endfunction()

# zent_windows_test(FOLDER PROGRAM LAUNCHER FIXTURE)
#
# A test program built for Windows, started by LAUNCHER: one CTest test, label `windows`, since each
# start under Wine costs more than most tests. FIXTURE is what it needs beside Wine, or empty.
function(zent_windows_test folder program launcher fixture)
  add_test(NAME windows.${folder}
    COMMAND ${launcher} "$<TARGET_FILE:${program}>" --gtest_brief=1)
  set_tests_properties(windows.${folder} PROPERTIES LABELS windows
    FIXTURES_REQUIRED "wine;${fixture}")
endfunction()

# zent_test(FOLDER SOURCES file... USES folder... [LINKS target...] [LABEL label] [LAUNCHER program]
#           [FIXTURE name])
#
# The test program of src/FOLDER: links that library, the adapters it needs (USES) and the test
# support. Every test is listed by CTest under its own name, and started by LAUNCHER where one is
# given, with the CTest fixture that it needs.
function(zent_test folder)
  cmake_parse_arguments(ARG "" "LABEL;FIXTURE" "SOURCES;USES;LINKS;LAUNCHER" ${ARGN})
  string(REPLACE "/" "_" name "${folder}")
  add_executable(test_${name} ${ARG_SOURCES})
  set(uses)
  foreach(other IN LISTS ARG_USES)
    string(REPLACE "/" "_" other "zent_${other}")
    list(APPEND uses ${other})
  endforeach()
  target_link_libraries(test_${name} PRIVATE ${uses} ${ARG_LINKS} zent_test_support zent_warnings
                                             GTest::gmock GTest::gtest_main)
  target_compile_definitions(test_${name} PRIVATE
    ZENT_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data")
  zent_test_options(test_${name})
  if(ZENT_PRECOMPILE AND NOT ARG_LABEL STREQUAL "qt")
    target_precompile_headers(test_${name} REUSE_FROM zent_test_support)
  endif()
  if(NOT ARG_LABEL)
    set(ARG_LABEL unit)
  endif()
  if(WIN32)
    if(NOT ARG_LAUNCHER)
      set(ARG_LAUNCHER ${ZENT_WINE_RUN})
    endif()
    zent_windows_test(${folder} test_${name} "${ARG_LAUNCHER}" "${ARG_FIXTURE}")
    return()
  endif()
  if(ARG_LAUNCHER)
    set_target_properties(test_${name} PROPERTIES CROSSCOMPILING_EMULATOR "${ARG_LAUNCHER}")
  endif()
  gtest_discover_tests(test_${name} TEST_PREFIX "${folder}." DISCOVERY_TIMEOUT 60
                       PROPERTIES LABELS ${ARG_LABEL} FIXTURES_REQUIRED "${ARG_FIXTURE}")
endfunction()
