# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later

# One target carries the language level, the warnings and Qt's strictness for every library of the tree.
add_library(duskbeacon_options INTERFACE)
target_compile_features(duskbeacon_options INTERFACE cxx_std_20)
target_compile_options(duskbeacon_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Woverloaded-virtual -Werror
  -fvisibility=hidden)
if(WIN32)
  # Windows 10, the first that Qt 6 runs on.
  target_compile_definitions(duskbeacon_options INTERFACE
    _WIN32_WINNT=0x0A00 UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN)
else()
  target_compile_options(duskbeacon_options INTERFACE -fPIC)
endif()
target_compile_definitions(duskbeacon_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CONTEXTLESS_CONNECT
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_DISABLE_DEPRECATED_BEFORE=0x060400)
if(DUSKBEACON_SANITIZE)
  target_compile_options(duskbeacon_options INTERFACE
    -fsanitize=${DUSKBEACON_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(duskbeacon_options INTERFACE -fsanitize=${DUSKBEACON_SANITIZE})
endif()
if(DUSKBEACON_FUZZ)
  # Report the code that an input reaches to the fuzzer, and stop at an index outside a container.
  target_compile_options(duskbeacon_options INTERFACE -fsanitize=fuzzer-no-link)
  target_compile_definitions(duskbeacon_options INTERFACE _GLIBCXX_ASSERTIONS)
endif()
if(DUSKBEACON_COVERAGE)
  target_compile_options(duskbeacon_options INTERFACE --coverage -fprofile-update=atomic)
  target_link_options(duskbeacon_options INTERFACE --coverage)
endif()

# For the shipped programs: hardened, since they read data from the network, and without paths of the build folder.
add_library(duskbeacon_shipped INTERFACE)
target_link_libraries(duskbeacon_shipped INTERFACE duskbeacon_options)
target_compile_options(duskbeacon_shipped INTERFACE
  -fstack-protector-strong
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${PROJECT_BINARY_DIR}=./build)
if(NOT WIN32)
  target_compile_options(duskbeacon_shipped INTERFACE -fstack-clash-protection -fcf-protection)
  target_link_options(duskbeacon_shipped INTERFACE -Wl,-z,relro,-z,now -Wl,--as-needed)
endif()
if(NOT DUSKBEACON_SANITIZE)
  target_compile_options(duskbeacon_shipped INTERFACE
    "$<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
endif()

set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_CXX_EXTENSIONS OFF)
# All files that the program needs at run time, so that it starts from the build tree.
set(DUSKBEACON_BIN_DIR ${PROJECT_BINARY_DIR}/bin)

# Makes a unity build of each folder below this one if DUSKBEACON_UNITY lists FOLDER. A unity build hides a missing include; the
# preset dev finds it.
macro(duskbeacon_unity folder)
  if(${folder} IN_LIST DUSKBEACON_UNITY)
    set(CMAKE_UNITY_BUILD ON)
    set(CMAKE_UNITY_BUILD_BATCH_SIZE 8)
    # This warning treats a source file of a unity build as a header.
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
  endif()
endmacro()

# The library of a folder: duskbeacon_library(NAME SOURCES … LINKS …). Its headers are found as "folder/Header.h", through an
# include root that holds a link to this one folder, and only by what links the library: an include that is missing in LINKS
# does not compile. A source that includes "ui_Window.h" has Window.ui beside it.
function(duskbeacon_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  cmake_path(GET CMAKE_CURRENT_SOURCE_DIR FILENAME folder)
  set(root ${PROJECT_BINARY_DIR}/include/${name})
  file(MAKE_DIRECTORY ${root})
  file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${root}/${folder} SYMBOLIC)
  target_include_directories(${name} PUBLIC ${root})
  target_link_libraries(${name} PRIVATE duskbeacon_shipped ${ARG_LINKS})
  if("Qt6::Widgets" IN_LIST ARG_LINKS)
    set_target_properties(${name} PROPERTIES AUTOUIC ON AUTOUIC_OPTIONS --no-autoconnection)
  endif()
endfunction()

# Two false warnings of GCC 12: an overlap where strings are joined at -O3 (its bug 105651), and a mismatched new and delete for
# the frames of Asio's coroutines, which have their own allocator.
# One defect of Clang 14: -fsanitize=function does not compile for a coroutine.
add_library(duskbeacon_server_warnings INTERFACE)
target_compile_options(duskbeacon_server_warnings INTERFACE
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict;-Wno-mismatched-new-delete>
  $<$<CXX_COMPILER_ID:Clang>:-fno-sanitize=function>)

# The library of a folder under server/. It does not use Qt.
function(duskbeacon_server_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES AUTOMOC OFF)
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/server)
  target_link_libraries(${name} PUBLIC ${ARG_PUBLIC} PRIVATE duskbeacon_shipped duskbeacon_server_warnings ${ARG_PRIVATE})
endfunction()
