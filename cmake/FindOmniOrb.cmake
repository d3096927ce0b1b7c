# Finds omniORB and its IDL compiler; defines OmniOrb::OmniOrb, OmniOrb::Tls for its transport through TLS, and
# OmniOrb_OMNIIDL.
find_package(PkgConfig QUIET)
pkg_check_modules(PC_OMNIORB QUIET omniORB4 omnithread4)

find_path(OmniOrb_INCLUDE_DIR omniORB4/CORBA.h HINTS ${PC_OMNIORB_INCLUDE_DIRS})
find_library(OmniOrb_LIBRARY omniORB4 HINTS ${PC_OMNIORB_LIBRARY_DIRS})
find_library(OmniOrb_THREAD_LIBRARY omnithread HINTS ${PC_OMNIORB_LIBRARY_DIRS})
find_library(OmniOrb_TLS_LIBRARY omnisslTP4 HINTS ${PC_OMNIORB_LIBRARY_DIRS})
find_program(OmniOrb_OMNIIDL omniidl)
find_package(OpenSSL 1.1.1 QUIET)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(OmniOrb
  REQUIRED_VARS OmniOrb_LIBRARY OmniOrb_THREAD_LIBRARY OmniOrb_TLS_LIBRARY OmniOrb_INCLUDE_DIR OPENSSL_FOUND
  VERSION_VAR PC_OMNIORB_VERSION)

if(OmniOrb_FOUND AND NOT TARGET OmniOrb::OmniOrb)
  add_library(OmniOrb::OmniOrb UNKNOWN IMPORTED)
  set_target_properties(OmniOrb::OmniOrb PROPERTIES
    IMPORTED_LOCATION ${OmniOrb_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${OmniOrb_INCLUDE_DIR}
    INTERFACE_LINK_LIBRARIES ${OmniOrb_THREAD_LIBRARY})
  add_library(OmniOrb::Tls UNKNOWN IMPORTED)
  set_target_properties(OmniOrb::Tls PROPERTIES
    IMPORTED_LOCATION ${OmniOrb_TLS_LIBRARY}
    INTERFACE_LINK_LIBRARIES "OmniOrb::OmniOrb;OpenSSL::SSL")
endif()
mark_as_advanced(OmniOrb_INCLUDE_DIR OmniOrb_LIBRARY OmniOrb_THREAD_LIBRARY OmniOrb_TLS_LIBRARY
  OmniOrb_OMNIIDL)
