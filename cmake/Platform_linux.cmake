# What the program is made of on Linux, and what Debian's packages it takes for it.

include(GNUInstallDirs)

find_package(CURL REQUIRED)
find_package(nlohmann_json REQUIRED) # for demo, tools and tests
find_package(OpenSSL REQUIRED)
find_package(CLI11 REQUIRED)

target_link_options(orvane_warnings INTERFACE -Wl,--gc-sections -Wl,-z,relro -Wl,-z,now)

# A test program that has an answer of its own to one of the product linkage's questions does not take the archive's.
set(ORVANE_SYSTEM_SOURCES ${ORVANE_SYSTEM_LINUX_SOURCES} ${ORVANE_PRODUCT_LINKAGE_SOURCES})
set(ORVANE_SENDER_SOURCES ${ORVANE_ENGINE_SENDER_SOURCES} ${ORVANE_ENGINE_SENDER_LINUX_SOURCES})
include(cmake/Folders.cmake)
target_link_libraries(orvane_platform PRIVATE CURL::libcurl OpenSSL::SSL)

# Whose certificates are believed: the product takes the system's, a rehearsal brings its own.
add_library(orvane_system_authorities STATIC src/platform/TrustedAuthorities_linux.cpp)
target_link_libraries(orvane_system_authorities PUBLIC orvane::platform)

if(ORVANE_FUZZING)
    add_subdirectory(tests/fuzz)
    return()
endif()

find_package(Qt6 REQUIRED COMPONENTS Widgets)
find_package(PkgConfig REQUIRED)
pkg_check_modules(LIBSYSTEMD REQUIRED IMPORTED_TARGET libsystemd)

# The desktop half: window, alert, main queue, the end of the process.
add_library(orvane_desktop STATIC ${ORVANE_DESKTOP_LINUX_SOURCES})
add_library(orvane::desktop ALIAS orvane_desktop)
target_link_libraries(orvane_desktop PUBLIC orvane::platform PRIVATE Qt6::Widgets PkgConfig::LIBSYSTEMD)
list(TRANSFORM ORVANE_WINDOW_ICONS PREPEND packaging/icons/hicolor/)
qt_add_resources(orvane_desktop window_icons PREFIX /icons BASE packaging/icons/hicolor FILES ${ORVANE_WINDOW_ICONS})
# Where Qt looks for its configuration first.
configure_file(packaging/linux/qt.conf.in ${PROJECT_BINARY_DIR}/generated/qt.conf @ONLY)
qt_add_resources(orvane_desktop qt_configuration PREFIX /qt/etc
    BASE ${PROJECT_BINARY_DIR}/generated FILES ${PROJECT_BINARY_DIR}/generated/qt.conf)

add_executable(OrvaneBootstrap src/app/main.cpp)
target_link_libraries(OrvaneBootstrap PRIVATE ${ORVANE_PROGRAM} orvane_system_authorities orvane::desktop)
include(cmake/Packaging.cmake)

add_subdirectory(demo)
add_subdirectory(launcher)
add_subdirectory(tools)
include(cmake/Components.cmake)

include(CTest)
if(BUILD_TESTING)
    add_subdirectory(tests)
    # Measures with the tests' HTTPS server.
    add_subdirectory(bench EXCLUDE_FROM_ALL)
endif()
