# Finds the libraries that the project uses. The target names are the same on every platform.

if(WIN32)
  include(${CMAKE_CURRENT_LIST_DIR}/WindowsDependencies.cmake)
else()
  find_package(Boost 1.74 REQUIRED COMPONENTS filesystem)
  find_package(fmt REQUIRED)
  find_package(nlohmann_json REQUIRED)
  find_package(CLI11 REQUIRED)
  find_package(OpenSSL REQUIRED COMPONENTS Crypto)
endif()

# The compiled part of fmt. Header-only, each source compiles it again, which takes a third of the time of some
# sources; the library of Debian is shared, for one platform and without sanitizers.
add_library(compiled_fmt STATIC ${CMAKE_CURRENT_LIST_DIR}/CompiledFmt.cpp)
target_include_directories(compiled_fmt SYSTEM PUBLIC
  $<TARGET_PROPERTY:fmt::fmt,INTERFACE_INCLUDE_DIRECTORIES>)
