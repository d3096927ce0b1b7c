# zelko_generate_idl(<output variable> <file.idl>): runs the IDL compiler into the build tree and gives the sources.
# The header is <zelkoidl/NAME.hh> for a target that lists ${CMAKE_BINARY_DIR}/generated/idl as include directory.
function(zelko_generate_idl output idl)
  get_filename_component(name ${idl} NAME_WE)
  set(folder ${CMAKE_BINARY_DIR}/generated/idl/zelkoidl)
  file(MAKE_DIRECTORY ${folder})
  add_custom_command(
    OUTPUT ${folder}/${name}.hh ${folder}/${name}SK.cc
    COMMAND ${OmniOrb_OMNIIDL} -bcxx -Wbh=.hh -Wbs=SK.cc -C${folder} ${CMAKE_CURRENT_SOURCE_DIR}/${idl}
    DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${idl}
    COMMENT "omniidl ${idl}"
    VERBATIM)
  set(${output} ${folder}/${name}SK.cc ${folder}/${name}.hh PARENT_SCOPE)
endfunction()
