# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later

# The toolchain for Windows: Debian's mingw-w64 with POSIX threads, and the libraries that scripts/windows/libraries builds into
# the folder DUSKBEACON_WINDOWS_LIBRARIES, each with a folder of its own.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# The compiler's own libraries become part of each program and library: they need no DLL of the compiler at run time. The
# protection of the stack needs one of them, also where only a linked library has it. No time stamps: two builds give the same bytes.
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT
    "-static -fstack-protector-strong -Wl,--dynamicbase,--high-entropy-va,--nxcompat,--no-insert-timestamp")
endforeach()

# CMake reads this file again for each check of the compiler.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES DUSKBEACON_WINDOWS_LIBRARIES)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
file(GLOB libraries LIST_DIRECTORIES true "${DUSKBEACON_WINDOWS_LIBRARIES}/*")
list(APPEND CMAKE_FIND_ROOT_PATH ${libraries})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Without this, CMake would prefer the DLL.
set(ZLIB_LIBRARY /usr/x86_64-w64-mingw32/lib/libz.a CACHE FILEPATH "zlib")

# moc, uic and rcc come from the Qt of this machine, which has the same version.
set(QT_HOST_PATH /usr)
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/x86_64-linux-gnu/cmake)

# Test programs run under Wine.
set(CMAKE_CROSSCOMPILING_EMULATOR /usr/lib/wine/wine64)
