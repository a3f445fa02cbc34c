# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later

# cmake -DSOURCE=FILE -DDESTINATION=FILE -P CopyIfMissing.cmake
# Copies SOURCE to DESTINATION, folders included, unless something stands at DESTINATION already.
cmake_minimum_required(VERSION 3.25)
if(NOT SOURCE OR NOT DESTINATION)
  message(FATAL_ERROR "Both SOURCE and DESTINATION must be given")
endif()
# EXISTS follows links and takes a dangling one for nothing; the copy would take its place.
if(NOT EXISTS "${DESTINATION}" AND NOT IS_SYMLINK "${DESTINATION}")
  cmake_path(GET DESTINATION PARENT_PATH folder)
  file(MAKE_DIRECTORY "${folder}")
  file(COPY_FILE "${SOURCE}" "${DESTINATION}")
  # The program saves to its copy, which must be possible from a read-only source tree too.
  file(CHMOD "${DESTINATION}" PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endif()
