# The page of src/output/overview as a header, generated/output/overview_page.h: two texts, before its data and after them.
set(page_source ${CMAKE_CURRENT_SOURCE_DIR}/src/output/overview)
foreach(ending html css js)
  file(READ ${page_source}/overview.${ending} page_${ending})
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${page_source}/overview.${ending})
endforeach()
foreach(never "</script" "<!--" ")page\"")
  string(FIND "${page_js}${page_css}" "${never}" at)
  if(NOT at EQUAL -1)
    message(FATAL_ERROR "overview.js and overview.css must not contain ${never}")
  endif()
endforeach()
string(REPLACE "@STYLE@" "${page_css}" page "${page_html}")
string(REPLACE "@CODE@" "${page_js}" page "${page}")
string(FIND "${page}" "@DATA@" at)
string(SUBSTRING "${page}" 0 ${at} page_before)
math(EXPR at "${at} + 6")
string(SUBSTRING "${page}" ${at} -1 page_after)
file(
  WRITE ${CMAKE_CURRENT_BINARY_DIR}/overview_page.h
  "// The page of the overview, made of src/output/overview.
#pragma once
#include <string_view>

namespace trimora::rooms {

inline constexpr std::string_view page_before_data = R\"page(${page_before})page\";
inline constexpr std::string_view page_after_data = R\"page(${page_after})page\";

}  // namespace trimora::rooms
")
# Copied only if it differs, so that nothing is compiled again without need.
configure_file(${CMAKE_CURRENT_BINARY_DIR}/overview_page.h generated/output/overview_page.h COPYONLY)
