# One place for the compiler's strictness and for what every binary of the project shares.

add_compile_definitions(UNICODE _UNICODE STRICT NOMINMAX WIN32_LEAN_AND_MEAN WINVER=0x0601 _WIN32_WINNT=0x0601)

# Texts in .rc files are UTF-8.
set(CMAKE_RC_FLAGS "${CMAKE_RC_FLAGS} -c 65001")

# Nothing that Windows does not ship may be needed at run time: libgcc, libstdc++ and winpthread are linked in.
add_link_options(-static)

# Identical sources give identical files, whatever the folder and the hour.
add_compile_options(-ffile-prefix-map=${CMAKE_SOURCE_DIR}=. -ffile-prefix-map=${CMAKE_BINARY_DIR}=.)
add_link_options(-Wl,--no-insert-timestamp)

set(KZP_WARNINGS
  -Wall -Wextra -Wpedantic -Werror
  -Wconversion -Wsign-conversion -Wshadow -Wundef
  # No -Wnon-virtual-dtor: a COM interface must not have a virtual destructor, it would be a slot.
  -Woverloaded-virtual
  -Wformat=2
)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  list(APPEND KZP_WARNINGS -Wduplicated-cond -Wduplicated-branches -Wlogical-op)
endif()

# The project's own code is compiled with every warning as an error; googletest is not ours.
function(kzp_strict target)
  target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:${KZP_WARNINGS}>)
endfunction()

# Undefined behaviour ends the program where it happens, and so does an index outside a container.
function(kzp_trap_faults target)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:
      -fsanitize=undefined,float-cast-overflow -fsanitize-undefined-trap-on-error>)
    target_compile_definitions(${target} PRIVATE _GLIBCXX_ASSERTIONS)
  endif()
endfunction()
