cmake_minimum_required(VERSION 3.25)

# Writes a C++ source that holds the report's page: cmake -DREPORT=FOLDER -DLIBRARY=FILE -DLICENCE=FILE
# -DOUT=FILE -P EmbedReport.cmake

file(READ ${REPORT}/page.html page)
file(READ ${REPORT}/page.css style)
file(READ ${LIBRARY} library)
file(READ ${LICENCE} licence)
set(script "")
foreach(part columns text canvas clock streams screen values timeline heat records contents transport page)
  file(READ ${REPORT}/${part}.js text)
  string(APPEND script "${text}\n")
endforeach()

# The map of the library's sources is no part of the page.
string(REGEX REPLACE "\n//# sourceMappingURL=[^\n]*" "" library "${library}")
string(REPLACE "&" "&amp;" licence "${licence}")
string(REPLACE "<" "&lt;" licence "${licence}")
foreach(text IN ITEMS "${library}" "${script}")
  string(FIND "${text}" "</script" end)
  if(NOT end EQUAL -1)
    message(FATAL_ERROR "a script of the report ends its own element")
  endif()
endforeach()

string(REPLACE "@STYLE@" "${style}" page "${page}")
string(REPLACE "@LICENCE@" "${licence}" page "${page}")
string(REPLACE "@LIBRARY@" "${library}" page "${page}")
string(REPLACE "@SCRIPT@" "(() => {\n\"use strict\";\n${script}})();" page "${page}")

string(LENGTH "${page}" size)
string(HEX "${page}" bytes)
string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
string(LENGTH "${bytes}" digits)
math(EXPR size "${digits} / 5")
file(WRITE ${OUT}
  "#include \"tools/formats/ReportPage.h\"\n\n"
  "namespace formats {\n\n"
  "static constexpr unsigned char kPage[${size}] = {${bytes}};\n\n"
  "std::string_view reportPage() {\n"
  "  return {reinterpret_cast<const char*>(kPage), sizeof kPage};\n"
  "}\n\n"
  "}  // namespace formats\n")
