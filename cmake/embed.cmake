# Make a header of the page of src/output/overview: cmake -D SOURCE=FOLDER -D HEADER=FILE -P embed.cmake
# The page is two texts, before its data and after them.
foreach(ending html css js)
  file(READ "${SOURCE}/overview.${ending}" ${ending})
endforeach()
foreach(never "</script" "<!--" ")page\"")
  string(FIND "${js}${css}" "${never}" at)
  if(NOT at EQUAL -1)
    message(FATAL_ERROR "overview.js and overview.css must not contain ${never}")
  endif()
endforeach()
string(REPLACE "@STYLE@" "${css}" page "${html}")
string(REPLACE "@CODE@" "${js}" page "${page}")
string(FIND "${page}" "@DATA@" at)
string(SUBSTRING "${page}" 0 ${at} before)
math(EXPR at "${at} + 6")
string(SUBSTRING "${page}" ${at} -1 after)
file(
  WRITE "${HEADER}"
  "// The page of the overview, made of src/output/overview.
#pragma once
#include <string_view>

namespace trimora::rooms {

inline constexpr std::string_view page_before_data = R\"page(${before})page\";
inline constexpr std::string_view page_after_data = R\"page(${after})page\";

}  // namespace trimora::rooms
")
