# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
include(GoogleTest)

# Put before a path that a test program opens: Wine has the files of this machine on a drive.
if(WIN32)
  set(DUSKBEACON_DRIVE "Z:")
endif()

# A test program: duskbeacon_test(NAME SOURCES … LIBRARIES … [LABELS …] [TIMEOUT seconds] [STARTED_ELSEWHERE]). With
# STARTED_ELSEWHERE the folder registers the tests itself. The label "clock" marks tests that count seconds of a real clock:
# scripts/run_tests retries them once. A program has one label, "slow_clock" where it is both: ctest reads labels as patterns.
function(duskbeacon_test name)
  cmake_parse_arguments(ARG "STARTED_ELSEWHERE" "TIMEOUT" "SOURCES;LIBRARIES;LABELS" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  # Tests run for milliseconds; optimising them would cost minutes of every build.
  target_compile_options(${name} PRIVATE -O0)
  target_link_libraries(${name} PRIVATE duskbeacon_options ${ARG_LIBRARIES} test_main test_sanitizing)
  # The headers that nearly all tests include are half of their compile time. The flags of GStreamer do not fit the precompiled
  # header.
  if(NOT "PkgConfig::GSTREAMER" IN_LIST ARG_LIBRARIES)
    target_precompile_headers(${name} REUSE_FROM test_main)
  endif()
  target_compile_options(${name} PRIVATE -UQT_TESTCASE_BUILDDIR -UQT_TESTCASE_SOURCEDIR)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests)
  if(ARG_STARTED_ELSEWHERE)
    return()
  endif()
  # An empty value would make the next property its value.
  set(properties TIMEOUT ${ARG_TIMEOUT})
  if(ARG_LABELS)
    list(APPEND properties LABELS ${ARG_LABELS})
  endif()
  # Start slow tests first, so that none runs alone at the end.
  if(ARG_LABELS MATCHES slow)
    list(APPEND properties COST 300)
  endif()
  if(WIN32)
    # A start under Wine takes longer than most tests.
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES ${properties} TIMEOUT 600)
  else()
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST NO_PRETTY_VALUES PROPERTIES ${properties})
  endif()
endfunction()

# duskbeacon_scaled_tests(program filter): runs the filtered tests of the program at other scales of the screen too. A scale is set
# when a program starts; fonts do not grow in exact proportion to it.
function(duskbeacon_scaled_tests program filter)
  if(WIN32)
    # Wine keeps the variables of Qt to itself.
    return()
  endif()
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
