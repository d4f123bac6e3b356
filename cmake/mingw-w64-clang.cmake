# Second compiler: Debian's clang for the same target, with the headers and libraries of the same mingw-w64 packages.
# clang compiles; g++ links, for it knows where they are. Its notes on duplicate sections of different size are harmless:
# both compilers wrote the type names of the same exceptions. The presets that use this optimise at least a little:
# without that clang also writes the comparison of type_info, which the run-time has itself.
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)

set(KZP_LINKER_DRIVER ${CMAKE_CXX_COMPILER})
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_CXX_COMPILER_TARGET ${KZP_TARGET_TRIPLE})
execute_process(COMMAND ${KZP_LINKER_DRIVER} -print-file-name=include/c++
  OUTPUT_VARIABLE kzp_headers OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
set(CMAKE_CXX_FLAGS_INIT
  "-nostdinc++ -isystem ${kzp_headers} -isystem ${kzp_headers}/${KZP_TARGET_TRIPLE}")
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_USER_MAKE_RULES_OVERRIDE_CXX ${CMAKE_CURRENT_LIST_DIR}/LinkByGcc.cmake)
