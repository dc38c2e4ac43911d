# The Wine environment of a build folder, and the two CTest tests that start and end it around the
# tests that need it: those have the property FIXTURES_REQUIRED wine.
#
# ZENT_WINE_RUN is what starts a program there, as the test command or as CROSSCOMPILING_EMULATOR.
set(ZENT_WINE_STATE "${PROJECT_BINARY_DIR}/wine")
set(ZENT_WINE_RUN "${PROJECT_SOURCE_DIR}/scripts/wine/run" "${ZENT_WINE_STATE}")

add_test(NAME wine.start COMMAND "${PROJECT_SOURCE_DIR}/scripts/wine/start" "${ZENT_WINE_STATE}")
add_test(NAME wine.stop COMMAND "${PROJECT_SOURCE_DIR}/scripts/wine/stop" "${ZENT_WINE_STATE}")
set_tests_properties(wine.start PROPERTIES FIXTURES_SETUP wine LABELS windows TIMEOUT 120)
set_tests_properties(wine.stop PROPERTIES FIXTURES_CLEANUP wine LABELS windows TIMEOUT 60)
