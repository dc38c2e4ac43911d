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

# zent_windows_test(FOLDER PROGRAM LAUNCHER)
#
# A test program built for Windows, started by LAUNCHER: one CTest test, label `windows`, since each
# start under Wine costs more than most tests.
function(zent_windows_test folder program launcher)
  # Fast to build, and the tests are not what is shipped.
  target_compile_options(${program} PRIVATE -O0)
  add_test(NAME windows.${folder}
    COMMAND ${launcher} "$<TARGET_FILE:${program}>" --gtest_brief=1)
  set_tests_properties(windows.${folder} PROPERTIES LABELS windows FIXTURES_REQUIRED wine)
endfunction()

# zent_test(FOLDER SOURCES file... USES folder... [LINKS target...] [LABEL label] [LAUNCHER program])
#
# The test program of src/FOLDER: links that library, the adapters it needs (USES) and the test
# support. Every test is listed by CTest under its own name, and started by LAUNCHER where one is
# given.
function(zent_test folder)
  cmake_parse_arguments(ARG "" "LABEL" "SOURCES;USES;LINKS;LAUNCHER" ${ARGN})
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
  if(ZENT_SANITIZE)
    # Half the time to build: what is under test is optimised and checked for undefined behaviour,
    # the tests' own few lines need neither.
    target_compile_options(test_${name} PRIVATE -O0 -fno-sanitize=undefined)
  endif()
  if(NOT ARG_LABEL)
    set(ARG_LABEL unit)
  endif()
  if(WIN32)
    if(NOT ARG_LAUNCHER)
      set(ARG_LAUNCHER ${ZENT_WINE_RUN})
    endif()
    zent_windows_test(${folder} test_${name} "${ARG_LAUNCHER}")
    return()
  endif()
  if(ARG_LAUNCHER)
    set_target_properties(test_${name} PROPERTIES CROSSCOMPILING_EMULATOR "${ARG_LAUNCHER}")
  endif()
  gtest_discover_tests(test_${name} TEST_PREFIX "${folder}." DISCOVERY_TIMEOUT 60
                       PROPERTIES LABELS ${ARG_LABEL})
endfunction()
