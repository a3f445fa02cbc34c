# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later

# cmake -DSCRIPT=CopyIfMissing.cmake -DFOLDER=SCRATCH -P CopyIfMissingTest.cmake
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE "${FOLDER}")
file(MAKE_DIRECTORY "${FOLDER}")
file(WRITE "${FOLDER}/shipped.xml" "shipped")
file(CHMOD "${FOLDER}/shipped.xml" PERMISSIONS OWNER_READ)

function(copy_to destination)
  execute_process(
    COMMAND ${CMAKE_COMMAND} -DSOURCE=${FOLDER}/shipped.xml -DDESTINATION=${destination} -P ${SCRIPT}
    RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "Copying to ${destination} failed: ${result}")
  endif()
endfunction()

function(expect_content file wanted)
  file(READ "${file}" found)
  if(NOT found STREQUAL wanted)
    message(FATAL_ERROR "${file} holds \"${found}\", not \"${wanted}\"")
  endif()
endfunction()

# A missing file in a missing folder appears, writable though its source is not.
copy_to("${FOLDER}/bin/settings.xml")
expect_content("${FOLDER}/bin/settings.xml" "shipped")
execute_process(COMMAND stat -c %a "${FOLDER}/bin/settings.xml" OUTPUT_VARIABLE mode OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT mode STREQUAL "644")
  message(FATAL_ERROR "The copy has the mode ${mode}")
endif()

# A file that the program has saved stays, and so does an empty file.
file(WRITE "${FOLDER}/bin/settings.xml" "saved by the program")
copy_to("${FOLDER}/bin/settings.xml")
expect_content("${FOLDER}/bin/settings.xml" "saved by the program")
file(WRITE "${FOLDER}/bin/settings.xml" "")
copy_to("${FOLDER}/bin/settings.xml")
expect_content("${FOLDER}/bin/settings.xml" "")

# A dangling symbolic link stays too, and its target is not created.
file(CREATE_LINK "${FOLDER}/elsewhere.xml" "${FOLDER}/bin/linked.xml" SYMBOLIC)
copy_to("${FOLDER}/bin/linked.xml")
if(EXISTS "${FOLDER}/elsewhere.xml" OR NOT IS_SYMLINK "${FOLDER}/bin/linked.xml")
  message(FATAL_ERROR "A dangling link was replaced or written through")
endif()
