# Run as a script in build/macos: prints the sources of the macOS program, each a line, and writes what is made from
# the project's version and the vendor's values.
cmake_minimum_required(VERSION 3.25)

get_filename_component(root "${CMAKE_CURRENT_LIST_DIR}/../.." ABSOLUTE)
file(STRINGS "${root}/CMakeLists.txt" project REGEX "^project\\(")
string(REGEX MATCH "VERSION ([0-9.]+)" found "${project}")
set(PROJECT_VERSION "${CMAKE_MATCH_1}")

include("${root}/cmake/VendorValues.cmake")
include("${root}/cmake/Sources.cmake")
configure_file("${root}/packaging/macos/Info.plist.in" generated/Info.plist @ONLY)

foreach(source IN LISTS ORVANE_PORTABLE_SOURCES ORVANE_POSIX_SOURCES
                        ORVANE_SYSTEM_MAC_SOURCES ORVANE_DESKTOP_MAC_SOURCES)
    execute_process(COMMAND "${CMAKE_COMMAND}" -E echo "${source}")
endforeach()
execute_process(COMMAND "${CMAKE_COMMAND}" -E echo "app/main.cpp")
