# Cross toolchain: x86_64 Windows from Debian's mingw-w64 packages.
#
# KZP_THREAD_MODEL chooses between the two flavours of g++ that Debian ships: "win32" for what is delivered
# (smaller run-time, no winpthread), "posix" for tools and tests (googletest needs std::mutex).
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(KZP_THREAD_MODEL posix CACHE STRING "Thread model of the cross compiler: posix or win32")
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES KZP_THREAD_MODEL)

set(KZP_TARGET_TRIPLE x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${KZP_TARGET_TRIPLE}-gcc-${KZP_THREAD_MODEL})
set(CMAKE_CXX_COMPILER ${KZP_TARGET_TRIPLE}-g++-${KZP_THREAD_MODEL})
set(CMAKE_RC_COMPILER ${KZP_TARGET_TRIPLE}-windres)
set(CMAKE_DLLTOOL ${KZP_TARGET_TRIPLE}-dlltool)

set(CMAKE_FIND_ROOT_PATH /usr/${KZP_TARGET_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_CROSSCOMPILING_EMULATOR wine)
