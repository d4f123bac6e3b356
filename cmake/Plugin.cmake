# The two delivered DLLs: the plug-in and its resource module.

set(KZP_ROOMS core settings pages events help installer support)
foreach(room IN LISTS KZP_ROOMS)
  file(GLOB_RECURSE room_sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${room}/*.cpp)
  list(APPEND KZP_SOURCES ${room_sources})
endforeach()

kzp_delay_library(kzp_shell32_delay ${CMAKE_SOURCE_DIR}/cmake/shell32.def)
kzp_delay_library(kzp_msi_delay ${CMAKE_SOURCE_DIR}/cmake/msi.def)

add_library(KZPWriterUI SHARED
  ${KZP_SOURCES}
  resources/KZPWriterUI.rc
  resources/KZPWriterUI.def)
kzp_strict(KZPWriterUI)
target_include_directories(KZPWriterUI PRIVATE ${CMAKE_SOURCE_DIR})
set_target_properties(KZPWriterUI PROPERTIES PREFIX "" CXX_VISIBILITY_PRESET hidden)
target_compile_options(KZPWriterUI PRIVATE
  $<$<COMPILE_LANGUAGE:CXX>:-Os -ffunction-sections -fdata-sections>)
target_link_options(KZPWriterUI PRIVATE
  -s -Wl,--gc-sections
  # The linker would derive the base from the output's file name; a fixed one keeps builds identical.
  -Wl,--image-base,0x180000000
  -Wl,--dynamicbase -Wl,--nxcompat -Wl,--high-entropy-va)
target_link_libraries(KZPWriterUI PRIVATE kzp_shell32_delay kzp_msi_delay winspool gdi32)

# The resource module holds no code: no start files, no entry point, resources alone.
add_library(KZPWriterRes SHARED resources/KZPWriterRes.rc)
set_target_properties(KZPWriterRes PROPERTIES PREFIX "" LINKER_LANGUAGE CXX)
target_include_directories(KZPWriterRes PRIVATE ${CMAKE_SOURCE_DIR})
target_link_options(KZPWriterRes PRIVATE
  -nostdlib -s -Wl,--entry,0
  -Wl,--image-base,0x190000000
  -Wl,--dynamicbase -Wl,--nxcompat -Wl,--high-entropy-va)

add_custom_target(dist ALL
  COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_SOURCE_DIR}/dist
  COMMAND ${CMAKE_COMMAND} -E copy_if_different
    $<TARGET_FILE:KZPWriterUI> $<TARGET_FILE:KZPWriterRes> ${CMAKE_SOURCE_DIR}/dist
  COMMENT "dist/KZPWriterUI.dll, dist/KZPWriterRes.dll"
  VERBATIM)
add_dependencies(dist KZPWriterUI KZPWriterRes)
