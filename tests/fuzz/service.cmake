# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later

# The targets of the service.
find_package(pugixml REQUIRED)
find_package(LibLZMA REQUIRED)

duskbeacon_fuzz(requests
  SOURCES FuzzRequests.cpp FuzzTarget.h InputParts.h
  LIBRARIES duskbeacon_server_http duskbeacon_server_support)
duskbeacon_fuzz(texts
  SOURCES FuzzTexts.cpp FuzzTarget.h
  LIBRARIES
    duskbeacon_places duskbeacon_server_app duskbeacon_server_messages duskbeacon_server_protocol duskbeacon_server_support
    pugixml::pugixml)
duskbeacon_fuzz(configuration
  SOURCES FuzzConfiguration.cpp FuzzTarget.h
  LIBRARIES duskbeacon_server_app)
duskbeacon_fuzz(places_file
  SOURCES FuzzPlacesFile.cpp FuzzTarget.h
  LIBRARIES duskbeacon_places LibLZMA::LibLZMA)
duskbeacon_fuzz(import
  SOURCES FuzzImport.cpp FuzzTarget.h InputParts.h
  LIBRARIES duskbeacon_places)
duskbeacon_fuzz(mails
  SOURCES FuzzMails.cpp FuzzTarget.h
  LIBRARIES duskbeacon_server_messages duskbeacon_server_support)
# Reads from the heap, where the sanitizer detects a read beyond the file.
target_link_options(fuzz_places_file PRIVATE -Wl,--wrap=mmap,--wrap=munmap)

foreach(name requests texts configuration places_file import mails)
  set_target_properties(fuzz_${name} PROPERTIES AUTOMOC OFF)
  target_link_libraries(fuzz_${name} PRIVATE duskbeacon_server_warnings)
endforeach()
