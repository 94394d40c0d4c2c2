# What the program is made of on a Mac, with Xcode's compiler and the system's own frameworks.

include(GNUInstallDirs)
enable_language(OBJCXX)
set(CMAKE_OBJCXX_STANDARD 20)
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_OBJCXX_EXTENSIONS OFF)

target_link_options(orvane_warnings INTERFACE -Wl,-dead_strip)

set(ORVANE_SYSTEM_SOURCES ${ORVANE_SYSTEM_MAC_SOURCES} ${ORVANE_PRODUCT_LINKAGE_SOURCES})
set(ORVANE_SENDER_SOURCES ${ORVANE_ENGINE_SENDER_SOURCES} ${ORVANE_ENGINE_SENDER_MAC_SOURCES})
include(cmake/Folders.cmake)
target_compile_options(orvane_platform PRIVATE $<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-arc>)
target_link_libraries(orvane_platform PUBLIC "-framework Foundation" "-framework CoreFoundation" objc)

add_library(orvane_desktop STATIC ${ORVANE_DESKTOP_MAC_SOURCES})
target_compile_options(orvane_desktop PRIVATE $<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-arc>)
add_library(orvane::desktop ALIAS orvane_desktop)
target_link_libraries(orvane_desktop PUBLIC orvane::platform "-framework AppKit")

configure_file(packaging/macos/Info.plist.in generated/Info.plist @ONLY)
add_executable(OrvaneBootstrap MACOSX_BUNDLE src/app/main.cpp)
set_target_properties(OrvaneBootstrap PROPERTIES
    MACOSX_BUNDLE_INFO_PLIST "${CMAKE_BINARY_DIR}/generated/Info.plist")
target_link_libraries(OrvaneBootstrap PRIVATE ${ORVANE_PROGRAM} orvane::desktop)
