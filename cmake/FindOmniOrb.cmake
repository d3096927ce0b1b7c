# Finds omniORB and its IDL compiler; defines OmniOrb::OmniOrb and OmniOrb_OMNIIDL.
find_package(PkgConfig QUIET)
pkg_check_modules(PC_OMNIORB QUIET omniORB4 omnithread4)

find_path(OmniOrb_INCLUDE_DIR omniORB4/CORBA.h HINTS ${PC_OMNIORB_INCLUDE_DIRS})
find_library(OmniOrb_LIBRARY omniORB4 HINTS ${PC_OMNIORB_LIBRARY_DIRS})
find_library(OmniOrb_THREAD_LIBRARY omnithread HINTS ${PC_OMNIORB_LIBRARY_DIRS})
find_program(OmniOrb_OMNIIDL omniidl)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(OmniOrb
  REQUIRED_VARS OmniOrb_LIBRARY OmniOrb_THREAD_LIBRARY OmniOrb_INCLUDE_DIR
  VERSION_VAR PC_OMNIORB_VERSION)

if(OmniOrb_FOUND AND NOT TARGET OmniOrb::OmniOrb)
  add_library(OmniOrb::OmniOrb UNKNOWN IMPORTED)
  set_target_properties(OmniOrb::OmniOrb PROPERTIES
    IMPORTED_LOCATION ${OmniOrb_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${OmniOrb_INCLUDE_DIR}
    INTERFACE_LINK_LIBRARIES ${OmniOrb_THREAD_LIBRARY})
endif()
mark_as_advanced(OmniOrb_INCLUDE_DIR OmniOrb_LIBRARY OmniOrb_THREAD_LIBRARY OmniOrb_OMNIIDL)
