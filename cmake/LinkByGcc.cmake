# Read once CMake has made its rules for clang: the linking ones call g++, which does not know clang's --target.
foreach(rule CMAKE_CXX_LINK_EXECUTABLE CMAKE_CXX_CREATE_SHARED_LIBRARY CMAKE_CXX_CREATE_SHARED_MODULE)
  string(REPLACE "<CMAKE_CXX_COMPILER>" "${KZP_LINKER_DRIVER}" ${rule} "${${rule}}")
  string(REPLACE "<FLAGS>" "" ${rule} "${${rule}}")
endforeach()
