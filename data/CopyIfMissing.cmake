# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later

# cmake -DSOURCE=FILE -DDESTINATION=FILE -P CopyIfMissing.cmake
# Copies SOURCE to DESTINATION, folders included, unless DESTINATION exists.
cmake_minimum_required(VERSION 3.25)
if(NOT SOURCE OR NOT DESTINATION)
  message(FATAL_ERROR "Both SOURCE and DESTINATION must be given")
endif()
# EXISTS is false for a dangling link, which the copy would replace.
if(NOT EXISTS "${DESTINATION}" AND NOT IS_SYMLINK "${DESTINATION}")
  cmake_path(GET DESTINATION PARENT_PATH folder)
  file(MAKE_DIRECTORY "${folder}")
  file(COPY_FILE "${SOURCE}" "${DESTINATION}")
  # The copy of a read-only source file must be writable.
  file(CHMOD "${DESTINATION}" PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endif()
