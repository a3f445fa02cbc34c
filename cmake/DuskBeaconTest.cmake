# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
include(GoogleTest)

# A test program: duskbeacon_test(NAME SOURCES … LIBRARIES … [LABELS …] [TIMEOUT seconds]).
function(duskbeacon_test name)
  cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;LIBRARIES;LABELS" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  # A test's own code runs for milliseconds; its optimisation costs minutes of every build.
  target_compile_options(${name} PRIVATE -O0)
  target_link_libraries(${name} PRIVATE duskbeacon_options ${ARG_LIBRARIES} test_main)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests)
  # Locale, zone, display and home are pinned here so that a test means the same on every machine.
  set(properties TIMEOUT ${ARG_TIMEOUT}
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;TZ=UTC;LC_ALL=C.UTF-8;LANG=C.UTF-8;HOME=${PROJECT_BINARY_DIR}/tests/home;XDG_CONFIG_HOME=;XDG_DATA_HOME=;XDG_STATE_HOME=;DBUS_SESSION_BUS_ADDRESS=disabled:;NO_AT_BRIDGE=1")
  # An empty value would swallow the property behind it.
  if(ARG_LABELS)
    list(APPEND properties LABELS ${ARG_LABELS})
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST NO_PRETTY_VALUES PROPERTIES ${properties})
endfunction()
