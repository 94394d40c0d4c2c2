# Run as a script in build/macos: prints the sources of each macOS program, a line of program and source each, and
# writes what is made from the project's version and the vendor's values.
cmake_minimum_required(VERSION 3.25)

get_filename_component(root "${CMAKE_CURRENT_LIST_DIR}/../.." ABSOLUTE)
file(STRINGS "${root}/CMakeLists.txt" project REGEX "^project\\(")
string(REGEX MATCH "VERSION ([0-9.]+)" found "${project}")
set(PROJECT_VERSION "${CMAKE_MATCH_1}")

include("${root}/cmake/VendorValues.cmake")
include("${root}/cmake/Sources.cmake")
configure_file("${root}/packaging/macos/Info.plist.in" generated/Info.plist @ONLY)

set(OrvaneBootstrap
    src/app/main.cpp
    ${ORVANE_PORTABLE_SOURCES}
    ${ORVANE_POSIX_SOURCES}
    ${ORVANE_PRODUCT_LINKAGE_SOURCES}
    ${ORVANE_SYSTEM_MAC_SOURCES}
    ${ORVANE_DESKTOP_MAC_SOURCES})

# The system half, and of the desktop half the queues, which need no window.
set(portableFacilities ${ORVANE_PORTABLE_SOURCES})
list(FILTER portableFacilities INCLUDE REGEX "^src/platform/")
set(OrvaneBootstrapSelfTest
    ${portableFacilities}
    ${ORVANE_POSIX_SOURCES}
    ${ORVANE_SYSTEM_MAC_SOURCES}
    src/platform/Queue_mac.mm
    ${ORVANE_TEST_SUPPORT_SOURCES}
    ${ORVANE_TEST_SUPPORT_MAC_SOURCES}
    ${ORVANE_TEST_SERVER_SOURCES}
    ${ORVANE_TEST_SERVER_PLAIN_SOURCES}
    ${ORVANE_CONFORMANCE_SOURCES}
    ${ORVANE_CONFORMANCE_MAC_SOURCES})

set(lines)
foreach(program OrvaneBootstrap OrvaneBootstrapSelfTest)
    foreach(source IN LISTS ${program})
        list(APPEND lines "${program} ${source}")
    endforeach()
endforeach()
list(JOIN lines "\n" text)
execute_process(COMMAND "${CMAKE_COMMAND}" -E echo "${text}")
