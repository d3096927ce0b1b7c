# A room is one library target with an include directory, an export header and an alias of its own.
include(GenerateExportHeader)
include(CMakePackageConfigHelpers)

# Three small object libraries own the precompiled headers, so that each set is compiled once for the whole house.
function(zelko_prepare_precompiled_headers)
  set(core <QtCore/QtCore> <algorithm> <functional> <memory> <string> <unordered_map> <vector>)
  set(widgets ${core} <QtGui/QtGui> <QtWidgets/QtWidgets>)
  file(WRITE ${CMAKE_BINARY_DIR}/pch/empty.cpp.in "// Owner of a precompiled header.\n")
  foreach(kind core widgets)
    configure_file(${CMAKE_BINARY_DIR}/pch/empty.cpp.in ${CMAKE_BINARY_DIR}/pch/${kind}.cpp COPYONLY)
    add_library(zelko_pch_${kind} OBJECT ${CMAKE_BINARY_DIR}/pch/${kind}.cpp)
    target_link_libraries(zelko_pch_${kind} PRIVATE zelko_warnings Qt6::Core)
    target_precompile_headers(zelko_pch_${kind} PRIVATE ${${kind}})
  endforeach()
  target_link_libraries(zelko_pch_widgets PRIVATE Qt6::Gui Qt6::Widgets)
endfunction()

# zelko_use_precompiled_headers(TARGET core|widgets)
function(zelko_use_precompiled_headers target kind)
  target_precompile_headers(${target} REUSE_FROM zelko_pch_${kind})
endfunction()

# Makes <prefix/header.h> resolve to this folder, for this target and those that link it, and for nobody else.
function(_zelko_own_include_directory target scope prefix)
  set(root ${CMAKE_BINARY_DIR}/rooms/${target})
  get_filename_component(parent ${root}/${prefix} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${root}/${prefix} SYMBOLIC)
  target_include_directories(${target} ${scope}
    $<BUILD_INTERFACE:${root}>
    $<BUILD_INTERFACE:${CMAKE_BINARY_DIR}/generated/${target}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/zelko>)
endfunction()

# The NO_INSTALL half of zelko_add_room; reads its parsed arguments.
macro(_zelko_add_inner_room)
  add_library(${target} STATIC ${ROOM_SOURCES} ${ROOM_HEADERS})
  add_library(${ROOM_ALIAS} ALIAS ${target})
  set_target_properties(${target} PROPERTIES AUTOMOC ON)
  _zelko_own_include_directory(${target} PUBLIC ${ROOM_PREFIX})
  target_link_libraries(${target} PUBLIC ${ROOM_PUBLIC} PRIVATE zelko_warnings ${ROOM_PRIVATE})
  if(ROOM_PCH)
    zelko_use_precompiled_headers(${target} ${ROOM_PCH})
  endif()
endmacro()

# zelko_add_room(<target> ALIAS <Zelko::Name> PREFIX <include prefix> [PCH core|widgets]
#                SOURCES ... HEADERS ... [PUBLIC ...] [PRIVATE ...] [NO_INSTALL])
# HEADERS are the installed ones, in the folders they are given with; without SOURCES the room is header only.
# NO_INSTALL is for rooms that only a program of the house links: a static library without an export header.
function(zelko_add_room target)
  cmake_parse_arguments(ROOM "NO_INSTALL" "ALIAS;PREFIX;PCH" "SOURCES;HEADERS;PUBLIC;PRIVATE" ${ARGN})
  string(REPLACE "Zelko::" "" exported ${ROOM_ALIAS})
  if(ROOM_NO_INSTALL)
    _zelko_add_inner_room()
    return()
  endif()
  if(ROOM_SOURCES)
    add_library(${target} SHARED ${ROOM_SOURCES} ${ROOM_HEADERS})
    set_target_properties(${target} PROPERTIES AUTOMOC ON VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
    string(TOLOWER ${target} base)
    string(REPLACE "-" "" base ${base})
    generate_export_header(${target} BASE_NAME ${base}
      EXPORT_FILE_NAME ${CMAKE_BINARY_DIR}/generated/${target}/${ROOM_PREFIX}/${base}_export.h)
    _zelko_own_include_directory(${target} PUBLIC ${ROOM_PREFIX})
    target_link_libraries(${target} PUBLIC ${ROOM_PUBLIC} PRIVATE zelko_warnings ${ROOM_PRIVATE})
    install(FILES ${CMAKE_BINARY_DIR}/generated/${target}/${ROOM_PREFIX}/${base}_export.h
      DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zelko/${ROOM_PREFIX})
    if(ROOM_PCH)
      zelko_use_precompiled_headers(${target} ${ROOM_PCH})
    endif()
  else()
    add_library(${target} INTERFACE)
    _zelko_own_include_directory(${target} INTERFACE ${ROOM_PREFIX})
    target_link_libraries(${target} INTERFACE ${ROOM_PUBLIC})
  endif()
  add_library(${ROOM_ALIAS} ALIAS ${target})
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${exported})
  foreach(header ${ROOM_HEADERS})
    get_filename_component(folder ${header} DIRECTORY)
    install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zelko/${ROOM_PREFIX}/${folder})
  endforeach()
  install(TARGETS ${target} EXPORT ZelkoTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
endfunction()

# find_package(ZelkoGUIBase) of another project finds every room under its Zelko:: name.
function(zelko_install_package)
  set(where ${CMAKE_INSTALL_LIBDIR}/cmake/ZelkoGUIBase)
  configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/ZelkoGUIBaseConfig.cmake.in
    ${CMAKE_BINARY_DIR}/ZelkoGUIBaseConfig.cmake INSTALL_DESTINATION ${where})
  write_basic_package_version_file(${CMAKE_BINARY_DIR}/ZelkoGUIBaseConfigVersion.cmake COMPATIBILITY SameMajorVersion)
  install(EXPORT ZelkoTargets NAMESPACE Zelko:: DESTINATION ${where})
  install(FILES ${CMAKE_BINARY_DIR}/ZelkoGUIBaseConfig.cmake ${CMAKE_BINARY_DIR}/ZelkoGUIBaseConfigVersion.cmake
    ${PROJECT_SOURCE_DIR}/cmake/FindOmniOrb.cmake DESTINATION ${where})
endfunction()
