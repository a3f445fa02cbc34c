# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
include(GoogleTest)

# A test program: duskbeacon_test(NAME SOURCES … LIBRARIES … [LABELS …] [TIMEOUT seconds] [STARTED_ELSEWHERE]). The last is for
# one whose folder registers its tests itself. The label "clock" says that the tests count seconds of a real clock: scripts/run_tests
# gives these one more try. A program has one label, "slow_clock" where it is both: labels are looked for as patterns.
function(duskbeacon_test name)
  cmake_parse_arguments(ARG "STARTED_ELSEWHERE" "TIMEOUT" "SOURCES;LIBRARIES;LABELS" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  # A test's own code runs for milliseconds; its optimisation costs minutes of every build.
  target_compile_options(${name} PRIVATE -O0)
  target_link_libraries(${name} PRIVATE duskbeacon_options ${ARG_LIBRARIES} test_main test_sanitizing)
  # Half of what a test costs to compile is the headers that nearly all of them include. GStreamer's flags are not those that
  # these are compiled with.
  if(NOT "PkgConfig::GSTREAMER" IN_LIST ARG_LIBRARIES)
    target_precompile_headers(${name} REUSE_FROM test_main)
  endif()
  target_compile_options(${name} PRIVATE -UQT_TESTCASE_BUILDDIR -UQT_TESTCASE_SOURCEDIR)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests)
  if(ARG_STARTED_ELSEWHERE)
    return()
  endif()
  # An empty value would swallow the property behind it.
  set(properties TIMEOUT ${ARG_TIMEOUT})
  if(ARG_LABELS)
    list(APPEND properties LABELS ${ARG_LABELS})
  endif()
  # What is slow starts early, so that it isn't left alone at the end.
  if(ARG_LABELS MATCHES slow)
    list(APPEND properties COST 300)
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST NO_PRETTY_VALUES PROPERTIES ${properties})
endfunction()

# duskbeacon_scaled_tests(program filter): the tests of that program which the filter names, at other scales of the screen as
# well, which are settled when a program starts. Fonts grow in steps of their own there.
function(duskbeacon_scaled_tests program filter)
  foreach(scale 1.25 1.5 2)
    string(REPLACE . _ name ${scale})
    gtest_discover_tests(${program} DISCOVERY_MODE PRE_TEST NO_PRETTY_VALUES
      TEST_FILTER ${filter} TEST_PREFIX At${name}. TEST_LIST ${program}_at_${name}
      PROPERTIES TIMEOUT 120 ENVIRONMENT "QT_SCALE_FACTOR=${scale}")
  endforeach()
endfunction()

# A test program of the service: duskbeacon_server_test(NAME SOURCES … LIBRARIES … [LABELS …] [TIMEOUT seconds]
# [STARTED_ELSEWHERE]).
function(duskbeacon_server_test name)
  cmake_parse_arguments(ARG "STARTED_ELSEWHERE" "TIMEOUT" "SOURCES;LIBRARIES;LABELS" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_compile_options(${name} PRIVATE -O0)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE
    duskbeacon_options duskbeacon_server_warnings ${ARG_LIBRARIES} GTest::gtest GTest::gmock GTest::gtest_main)
  set_target_properties(${name} PROPERTIES AUTOMOC OFF RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests)
  if(ARG_STARTED_ELSEWHERE)
    return()
  endif()
  set(properties TIMEOUT ${ARG_TIMEOUT})
  if(ARG_LABELS)
    list(APPEND properties LABELS ${ARG_LABELS})
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST NO_PRETTY_VALUES PROPERTIES ${properties})
endfunction()
