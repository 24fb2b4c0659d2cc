# Cross build for 64-bit Windows with Debian's MinGW-w64 compilers
# (g++-mingw-w64-x86-64-posix): cmake -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-x86_64.cmake
#
# The posix flavour of the compiler is the one with std::thread and std::mutex.
# Everything is linked statically (the C++ run-time, libgcc and winpthreads),
# so the .exe files need no DLL beside them on a bare Windows. Tests run
# through wine64 when it is installed.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(LEXSMITH_MINGW_TRIPLE x86_64-w64-mingw32)
find_program(CMAKE_C_COMPILER NAMES ${LEXSMITH_MINGW_TRIPLE}-gcc-posix ${LEXSMITH_MINGW_TRIPLE}-gcc REQUIRED)
find_program(CMAKE_CXX_COMPILER NAMES ${LEXSMITH_MINGW_TRIPLE}-g++-posix ${LEXSMITH_MINGW_TRIPLE}-g++ REQUIRED)
find_program(CMAKE_RC_COMPILER NAMES ${LEXSMITH_MINGW_TRIPLE}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${LEXSMITH_MINGW_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")

# ctest runs the test programs under Wine; 64-bit programs need only wine64.
find_program(LEXSMITH_WINE NAMES wine64 PATHS /usr/lib/wine NO_DEFAULT_PATH)
if(NOT LEXSMITH_WINE)
  find_program(LEXSMITH_WINE NAMES wine64 wine)
endif()
if(LEXSMITH_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR "${LEXSMITH_WINE}")
endif()
