# The compile and link options of every target: the target `project_options`.

include_guard(GLOBAL)

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()

set(KESTOVA_SANITIZERS "" CACHE STRING "Sanitizers to build with, as -fsanitize takes them")
option(KESTOVA_WERROR "Treat compiler warnings as errors" OFF)

include(${CMAKE_CURRENT_LIST_DIR}/Hardening.cmake)

add_library(project_options INTERFACE)
target_link_libraries(project_options INTERFACE hardening)
target_compile_options(project_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Woverloaded-virtual
  $<$<BOOL:${KESTOVA_WERROR}>:-Werror>
  # Nothing replaces functions of our shared libraries, so they may inline calls of their own functions.
  -fno-semantic-interposition
  # Frame numbers are defined by double arithmetic without fused multiply-add.
  -ffp-contract=off)
if(KESTOVA_SANITIZERS)
  target_compile_options(project_options INTERFACE
    -fsanitize=${KESTOVA_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(project_options INTERFACE -fsanitize=${KESTOVA_SANITIZERS})
endif()
target_include_directories(project_options INTERFACE ${PROJECT_SOURCE_DIR})

# Adds a library that hosts link: `shared_library(NAME SOURCES...)`. Its users get the include folder
# but none of the options above.
function(shared_library name)
  add_library(${name} SHARED ${ARGN})
  target_link_libraries(${name} PRIVATE project_options)
  target_include_directories(${name} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<INSTALL_INTERFACE:include/KestovaVOXASupport>)
  set_target_properties(${name} PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  if(WIN32)
    set_target_properties(${name} PROPERTIES PREFIX "")
  endif()
endfunction()
