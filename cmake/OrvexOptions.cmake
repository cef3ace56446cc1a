# Every option of the build has the one prefix ORVEX_.

option(ORVEX_TESTS "Build the tests" ON)
option(ORVEX_BENCH "Build the benchmarks when Google Benchmark is found" ON)
option(ORVEX_SANITIZE "Address and undefined-behaviour sanitizers" OFF)
option(ORVEX_FUZZ "Build the fuzz targets (clang only)" OFF)
option(ORVEX_TIDY "Run clang-tidy with every compilation" OFF)
option(ORVEX_WERROR "Treat warnings as errors (CI does)" OFF)
set(ORVEX_LANGUAGE "en" CACHE STRING "Language library installed beside the module (en, zh)")
set_property(CACHE ORVEX_LANGUAGE PROPERTY STRINGS en zh)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release)
endif()

# Programs and modules lie side by side, as the host expects them.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(CMAKE_INSTALL_RPATH "$ORIGIN;$ORIGIN/../lib")

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()
