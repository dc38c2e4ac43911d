# zent_sort_order(FILE OUTPUT): the runs of a sort order's text form as the rows of a C++ array.
#
# One regular expression a file: nine numbers or names, separated by blanks, become one brace list.
function(zent_sort_order file output)
  file(READ "${file}" text)
  string(REGEX REPLACE "#[^\n]*\n" "" text "${text}")
  set(word "([^ \n]+)")
  string(REGEX REPLACE "${word} ${word} ${word} ${word} ${word} ${word} ${word} ${word} ${word}\n"
    "{0x\\1, 0x\\2, SortClass::\\3, \\4, \\6, 0x\\5, \\7, \\9, 0x\\8},\n" text "${text}")
  file(CONFIGURE OUTPUT "${output}" CONTENT "${text}" @ONLY)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${file}")
endfunction()
