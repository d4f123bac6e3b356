# The sources of the plug-in, and the two delivered DLLs: the plug-in and its resource module.

set(KZP_ROOMS core settings pages events help installer support)
foreach(room IN LISTS KZP_ROOMS)
  file(GLOB_RECURSE room_sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${room}/*.cpp)
  list(APPEND KZP_SOURCES ${room_sources})
endforeach()

set(KZP_LIBRARIES winspool gdi32)

set(KZP_DIST ${CMAKE_SOURCE_DIR}/dist CACHE PATH "Where the two delivered DLLs go, and where tests take them")

if(KZP_TOOLS)
  # For the unit tests of pure logic: all sources as a library, of which a test takes what it calls. Tests keep the
  # run-time whole.
  list(REMOVE_ITEM KZP_SOURCES ${CMAKE_SOURCE_DIR}/support/RunTime.cpp)
  add_library(kzp_body STATIC ${KZP_SOURCES})
  kzp_strict(kzp_body)
  kzp_trap_faults(kzp_body)
  target_include_directories(kzp_body PUBLIC ${CMAKE_SOURCE_DIR})
  target_link_libraries(kzp_body PUBLIC ${KZP_LIBRARIES})
  return()
endif()

# The resource compiler does not tell which files it read.
file(GLOB_RECURSE resource_parts CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/resources/*.rcinc)
set_source_files_properties(resources/KZPWriterUI.rc resources/KZPWriterRes.rc PROPERTIES
  OBJECT_DEPENDS "${resource_parts};${CMAKE_SOURCE_DIR}/resources/resource.h")

add_library(KZPWriterUI SHARED
  ${KZP_SOURCES}
  resources/KZPWriterUI.rc
  resources/KZPWriterUI.def)
kzp_strict(KZPWriterUI)
target_include_directories(KZPWriterUI PRIVATE ${CMAKE_SOURCE_DIR})
set_target_properties(KZPWriterUI PROPERTIES PREFIX "" CXX_VISIBILITY_PRESET hidden)
target_compile_options(KZPWriterUI PRIVATE
  # Version 4 of the debugging information is what most debuggers read.
  $<$<COMPILE_LANGUAGE:CXX>:-Os -ffunction-sections -fdata-sections -gdwarf-4>)

# The tests run against these as well; they are never delivered.
set(KZP_FLAVOUR "" CACHE STRING "Plain, \"checked\" (traps for undefined behaviour) or \"coverage\" (counts lines)")
if(KZP_FLAVOUR STREQUAL "checked")
  kzp_trap_faults(KZPWriterUI)
elseif(KZP_FLAVOUR STREQUAL "coverage")
  target_compile_options(KZPWriterUI PRIVATE $<$<COMPILE_LANGUAGE:CXX>:--coverage -O0>)
  target_link_options(KZPWriterUI PRIVATE --coverage)
endif()

target_link_options(KZPWriterUI PRIVATE
  -Wl,--gc-sections
  # What went into it: cmake/CheckRunTime.cmake reads the map.
  -Wl,-Map,${CMAKE_CURRENT_BINARY_DIR}/KZPWriterUI.map
  # The linker would derive the base from the output's file name; a fixed one keeps builds identical.
  -Wl,--image-base,0x180000000
  # Pages of the file are pages in memory: a loader that can map them need not copy (a fifth of the time to load).
  -Wl,--file-alignment,0x1000
  -Wl,--dynamicbase -Wl,--nxcompat -Wl,--high-entropy-va)
target_link_libraries(KZPWriterUI PRIVATE ${KZP_LIBRARIES})

# The containers' checks bring along what the delivered plug-in does without.
if(KZP_FLAVOUR STREQUAL "")
  add_custom_command(TARGET KZPWriterUI POST_BUILD
    COMMAND ${CMAKE_COMMAND} -DMAP=${CMAKE_CURRENT_BINARY_DIR}/KZPWriterUI.map
      -P ${CMAKE_SOURCE_DIR}/cmake/CheckRunTime.cmake
    VERBATIM)
endif()

# The resource module holds no code: no start files, no entry point, resources alone.
add_library(KZPWriterRes SHARED resources/KZPWriterRes.rc)
set_target_properties(KZPWriterRes PROPERTIES PREFIX "" LINKER_LANGUAGE CXX)
target_include_directories(KZPWriterRes PRIVATE ${CMAKE_SOURCE_DIR})
target_link_options(KZPWriterRes PRIVATE
  -nostdlib -s -Wl,--entry,0 -Wl,-T,${CMAKE_SOURCE_DIR}/cmake/resource-only.ld
  -Wl,--image-base,0x190000000
  -Wl,--dynamicbase -Wl,--nxcompat -Wl,--high-entropy-va)

# Symbols stand in a file of their own, which the plug-in names, so that debuggers find it beside the plug-in.
# Preserved dates are the fixed ones inside the file as well.
set(stripped ${CMAKE_CURRENT_BINARY_DIR}/stripped)
add_custom_command(
  OUTPUT ${stripped}/KZPWriterUI.dll ${stripped}/KZPWriterUI.dll.debug
  COMMAND ${CMAKE_COMMAND} -E make_directory ${stripped}
  COMMAND ${CMAKE_OBJCOPY} --preserve-dates --only-keep-debug $<TARGET_FILE:KZPWriterUI> ${stripped}/KZPWriterUI.dll.debug
  COMMAND ${CMAKE_OBJCOPY} --preserve-dates --strip-all --add-gnu-debuglink=${stripped}/KZPWriterUI.dll.debug
    $<TARGET_FILE:KZPWriterUI> ${stripped}/KZPWriterUI.dll
  DEPENDS KZPWriterUI
  COMMENT "Symbols of KZPWriterUI.dll"
  VERBATIM)

add_custom_target(dist ALL
  COMMAND ${CMAKE_COMMAND} -E make_directory ${KZP_DIST}
  COMMAND ${CMAKE_COMMAND} -E copy_if_different
    ${stripped}/KZPWriterUI.dll ${stripped}/KZPWriterUI.dll.debug $<TARGET_FILE:KZPWriterRes> ${KZP_DIST}
  DEPENDS ${stripped}/KZPWriterUI.dll
  COMMENT "KZPWriterUI.dll, KZPWriterUI.dll.debug, KZPWriterRes.dll"
  VERBATIM)
add_dependencies(dist KZPWriterRes)
