# Libraries for the cross-build. The headers are those of Debian, which are the same for every target.
# They are included through links, because /usr/include also contains the headers of the C library.
# Boost.Filesystem is the only library with sources; scripts/boost-filesystem-source downloads them.

set(links ${PROJECT_BINARY_DIR}/headers)
file(MAKE_DIRECTORY ${links})
foreach(library boost CLI fmt nlohmann)
  file(CREATE_LINK /usr/include/${library} ${links}/${library} SYMBOLIC)
endforeach()

add_library(linked_headers INTERFACE)
target_include_directories(linked_headers SYSTEM INTERFACE $<BUILD_INTERFACE:${links}>)
target_compile_definitions(linked_headers INTERFACE
  _WIN32_WINNT=0x0601 UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN BOOST_ALL_NO_LIB)
foreach(target Boost::headers fmt::fmt nlohmann_json::nlohmann_json CLI11::CLI11)
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_link_libraries(${target} INTERFACE linked_headers)
endforeach()

set(BOOST_FILESYSTEM_SOURCE "" CACHE PATH "The folder libs/filesystem/src of Boost 1.74")
file(GLOB boost_filesystem_sources ${BOOST_FILESYSTEM_SOURCE}/*.cpp)
if(NOT boost_filesystem_sources)
  message(FATAL_ERROR "BOOST_FILESYSTEM_SOURCE: no sources in '${BOOST_FILESYSTEM_SOURCE}'; "
    "set it to the output of scripts/boost-filesystem-source")
endif()
add_library(boost_filesystem STATIC ${boost_filesystem_sources})
target_link_libraries(boost_filesystem PUBLIC linked_headers)
target_compile_definitions(boost_filesystem
  PRIVATE BOOST_FILESYSTEM_SOURCE PUBLIC BOOST_FILESYSTEM_STATIC_LINK=1)
target_compile_options(boost_filesystem PRIVATE -w)
add_library(Boost::filesystem ALIAS boost_filesystem)

# The runtime DLLs are copied beside the programs. They are shared, so that all binaries have the same
# exceptions and standard streams.
set(runtime_libraries)
foreach(library libstdc++-6 libgcc_s_seh-1 libwinpthread-1)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${library}.dll
    OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE)
  list(APPEND runtime_libraries ${file})
endforeach()
file(COPY ${runtime_libraries} DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
install(FILES ${runtime_libraries} TYPE BIN)
