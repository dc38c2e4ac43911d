# The database server of a build folder, and the two CTest tests that start and end it around the
# tests that need it: those have the property FIXTURES_REQUIRED servers.
#
# ZENT_SERVER_RUN is what starts a program that finds its data sources.
set(ZENT_SERVER_STATE "${PROJECT_BINARY_DIR}/servers")
set(ZENT_SERVER_RUN "${PROJECT_SOURCE_DIR}/scripts/servers/run" "${ZENT_SERVER_STATE}")

set(label servers)
if(WIN32)
  set(label windows)
endif()
foreach(step IN ITEMS start stop)
  add_test(NAME servers.${step}
    COMMAND "${PROJECT_SOURCE_DIR}/scripts/servers/${step}" "${ZENT_SERVER_STATE}")
  set_tests_properties(servers.${step} PROPERTIES LABELS ${label} TIMEOUT 120)
endforeach()
set_tests_properties(servers.start PROPERTIES FIXTURES_SETUP servers)
set_tests_properties(servers.stop PROPERTIES FIXTURES_CLEANUP servers)
