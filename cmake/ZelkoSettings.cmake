# What holds for every target of the house: language, warnings, sanitizers, linker, compiler cache.
include(GNUInstallDirs)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_AUTOMOC OFF)

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_INSTALL_RPATH $ORIGIN/../${CMAKE_INSTALL_LIBDIR})

option(ZELKO_WERROR "Treat compiler warnings as errors" OFF)
set(ZELKO_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize takes them; empty for none")
option(ZELKO_COVERAGE "Build with coverage counters" OFF)

find_program(ZELKO_CCACHE ccache)
if(ZELKO_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # The sloppiness is what ccache asks for to cache units that use a precompiled header.
  set(CMAKE_CXX_COMPILER_LAUNCHER
    ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
    ${ZELKO_CCACHE})
endif()

find_program(ZELKO_MOLD mold)
if(ZELKO_MOLD)
  add_link_options(-fuse-ld=mold)
endif()

# Warnings are the house's own: nothing that a consumer of the installed package inherits.
add_library(zelko_warnings INTERFACE)
target_compile_options(zelko_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Woverloaded-virtual
  -Wold-style-cast -Wcast-qual -Wnull-dereference -Wformat=2
  $<$<BOOL:${ZELKO_WERROR}>:-Werror>)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC 12 reports false positives of these once sanitizers or optimisation inline Qt's containers.
  target_compile_options(zelko_warnings INTERFACE -Wno-null-dereference -Wno-maybe-uninitialized)
endif()
target_compile_definitions(zelko_warnings INTERFACE
  QT_NO_KEYWORDS QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING QT_STRICT_ITERATORS
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)

if(ZELKO_SANITIZE)
  add_compile_options(-fsanitize=${ZELKO_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${ZELKO_SANITIZE})
endif()
if(ZELKO_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
endif()
