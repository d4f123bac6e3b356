# kzp_delay_library(NAME DEF): an import library whose DLL is loaded at the first call instead of with the plug-in.
#
# DEF is a module-definition file with LIBRARY and the few functions that are used. Linking NAME also brings the
# run-time's delay-load helper. Loading these DLLs up front would cost every printing process their start-up.
function(kzp_delay_library name def)
  set(library ${CMAKE_CURRENT_BINARY_DIR}/lib${name}.a)
  add_custom_command(
    OUTPUT ${library}
    # A relative name, for it becomes part of symbols.
    COMMAND ${CMAKE_DLLTOOL} -d ${def} --output-delaylib lib${name}.a
    WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}
    DEPENDS ${def}
    COMMENT "Delay-load library ${name}"
    VERBATIM)
  add_custom_target(${name}_file DEPENDS ${library})
  add_library(${name} INTERFACE)
  add_dependencies(${name} ${name}_file)
  target_link_libraries(${name} INTERFACE ${library} delayimp)
endfunction()
