# The libraries of the Windows build, under the names that the native build finds them by.
# `scripts/windows-libraries` has built or laid out each below ZENT_WINDOWS_LIBRARIES.
set(ZENT_WINDOWS_LIBRARIES "" CACHE PATH "What scripts/windows-libraries made for this processor")
if(NOT EXISTS "${ZENT_WINDOWS_LIBRARIES}/complete")
  message(FATAL_ERROR "Run scripts/windows-libraries first: nothing in '${ZENT_WINDOWS_LIBRARIES}'")
endif()

# Header-only here.
foreach(target IN ITEMS fmt::fmt-header-only nlohmann_json::nlohmann_json)
  add_library(${target} INTERFACE IMPORTED)
  target_include_directories(${target} SYSTEM INTERFACE "${ZENT_WINDOWS_LIBRARIES}/headers")
endforeach()
target_compile_definitions(fmt::fmt-header-only INTERFACE FMT_HEADER_ONLY=1)

add_library(PkgConfig::utf8proc STATIC IMPORTED)
set_target_properties(PkgConfig::utf8proc PROPERTIES
  IMPORTED_LOCATION "${ZENT_WINDOWS_LIBRARIES}/lib/libutf8proc.a")
target_include_directories(PkgConfig::utf8proc SYSTEM INTERFACE "${ZENT_WINDOWS_LIBRARIES}/include")
target_compile_definitions(PkgConfig::utf8proc INTERFACE UTF8PROC_STATIC)

add_library(LibXml2::LibXml2 STATIC IMPORTED)
set_target_properties(LibXml2::LibXml2 PROPERTIES
  IMPORTED_LOCATION "${ZENT_WINDOWS_LIBRARIES}/lib/libxml2.a")
target_include_directories(LibXml2::LibXml2 SYSTEM INTERFACE
  "${ZENT_WINDOWS_LIBRARIES}/include/libxml2")
target_compile_definitions(LibXml2::LibXml2 INTERFACE LIBXML_STATIC)
