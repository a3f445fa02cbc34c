# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later

# The tests of what Windows shares with Linux, and of its own files.
duskbeacon_test(platform_tests
  SOURCES BesideBoxTest.cpp FileStoreTest.cpp ProxySettingsTest.cpp QtBrowserTest.cpp QtMessageBoxesTest.cpp
    SecondPhaseTest.cpp WindowsFileStoreTest.cpp WindowsClockTest.cpp WindowsProcessTest.cpp WindowsRegionTest.cpp
  LIBRARIES test_fakes)
duskbeacon_test(curl_http_tests
  SOURCES CurlHttpNotifyTest.cpp CurlProbeTest.cpp
  LIBRARIES duskbeacon_platform test_server
  LABELS clock)
duskbeacon_test(ticker_tests SOURCES QtTimersTest.cpp LIBRARIES test_fakes LABELS slow_clock TIMEOUT 240)

# Driven by the scripts in tests/windows.
foreach(program fetcher player)
  add_executable(${program} ${program}.cpp)
  target_link_libraries(${program} PRIVATE duskbeacon_options duskbeacon_platform Qt6::Core)
  set_target_properties(${program} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests)
endforeach()
# The first changes the proxy of the system.
add_test(NAME http_test COMMAND ${PROJECT_SOURCE_DIR}/tests/windows/http_test.py $<TARGET_FILE:fetcher>)
add_test(NAME player_test COMMAND ${PROJECT_SOURCE_DIR}/tests/windows/player_test.py $<TARGET_FILE:player>)
set_tests_properties(http_test player_test PROPERTIES TIMEOUT 300 LABELS clock)
set_tests_properties(http_test PROPERTIES RUN_SERIAL ON)

add_executable(saver saver.cpp)
target_link_libraries(saver PRIVATE duskbeacon_options duskbeacon_platform Qt6::Core)
target_include_directories(saver PRIVATE ${PROJECT_SOURCE_DIR}/tests)
duskbeacon_test(kill_tests SOURCES KillWhileSavingTest.cpp LIBRARIES test_fakes LABELS slow)
# DUSKBEACON_KILL_ROUNDS may ask for more.
set_tests_properties(kill_tests PROPERTIES TIMEOUT 1800)
add_dependencies(kill_tests saver)
target_compile_definitions(kill_tests PRIVATE DUSKBEACON_SAVER="$<TARGET_FILE:saver>")

add_executable(region region.cpp)
target_link_libraries(region PRIVATE duskbeacon_options duskbeacon_platform duskbeacon_support Qt6::Core)
add_dependencies(platform_tests region)
target_compile_definitions(platform_tests PRIVATE DUSKBEACON_REGION="$<TARGET_FILE:region>")

# Ended by the messages of the session, which another process sends.
add_executable(session session.cpp)
target_link_libraries(session PRIVATE duskbeacon_options duskbeacon_platform Qt6::Widgets)
duskbeacon_test(session_tests SOURCES WindowsSessionEndTest.cpp LIBRARIES test_fakes LABELS display)
add_dependencies(session_tests session)
target_compile_definitions(session_tests PRIVATE DUSKBEACON_SESSION="$<TARGET_FILE:session>")
set_target_properties(region saver session PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests)
