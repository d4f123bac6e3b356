# The help file, compiled from help/topics by Free Pascal's chmcmd. Its name is the resource module's text
# IDS_ITEM_HELP_FILE; tests/delivery/check-help compares.

find_program(KZP_CHMCMD chmcmd DOC "Compiler of the help file (Debian: package fp-utils)")
find_program(KZP_SHELL sh DOC "Runs help/topics/make-help")
if(NOT KZP_CHMCMD OR NOT KZP_SHELL)
  message(STATUS "No chmcmd: the help file kzpwriter.chm is not made, the DLLs are")
  return()
endif()

set(help_file ${CMAKE_CURRENT_BINARY_DIR}/kzpwriter.chm)
set(topics ${CMAKE_SOURCE_DIR}/help/topics)
file(GLOB topic_files CONFIGURE_DEPENDS ${topics}/*)
add_custom_command(
  OUTPUT ${help_file}
  COMMAND ${KZP_SHELL} ${topics}/make-help ${help_file}
  DEPENDS ${topic_files}
  COMMENT "Help file"
  VERBATIM)
add_custom_target(help_file
  COMMAND ${CMAKE_COMMAND} -E make_directory ${KZP_DIST}
  COMMAND ${CMAKE_COMMAND} -E copy_if_different ${help_file} ${KZP_DIST}
  DEPENDS ${help_file}
  COMMENT "kzpwriter.chm"
  VERBATIM)
add_dependencies(dist help_file)
