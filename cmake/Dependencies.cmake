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
