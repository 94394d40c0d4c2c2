# Each folder of src/ is a library that sees its own headers and those of the folders it names as lying below it: nothing
# else is on the include path of its sources, so an include that goes the wrong way does not compile.

# orvane_include_root(FOLDER): makes a directory in the build in which FOLDER, of the repository, is alone, and names it
# in the variable FOLDER_root.
function(orvane_include_root folder)
    cmake_path(GET folder FILENAME name)
    set(root "${CMAKE_BINARY_DIR}/include/${name}")
    file(MAKE_DIRECTORY "${root}")
    file(CREATE_LINK "${CMAKE_SOURCE_DIR}/${folder}" "${root}/${name}" SYMBOLIC)
    set(${name}_root "${root}" PARENT_SCOPE)
endfunction()

# orvane_add_folder(NAME [SOURCES source…] [BELOW target…]): the library orvane::NAME of the portable sources in src/NAME
# and of SOURCES.
function(orvane_add_folder name)
    cmake_parse_arguments(PARSE_ARGV 1 folder "" "" "SOURCES;BELOW")
    set(sources ${ORVANE_PORTABLE_SOURCES})
    list(FILTER sources INCLUDE REGEX "^src/${name}/")
    orvane_include_root("src/${name}")
    add_library(orvane_${name} STATIC ${sources} ${folder_SOURCES})
    add_library(orvane::${name} ALIAS orvane_${name})
    target_include_directories(orvane_${name} PUBLIC "${${name}_root}")
    target_link_libraries(orvane_${name} PUBLIC orvane::warnings ${folder_BELOW})
endfunction()

# What an engine takes into its own build; it knows nothing of the program.
orvane_include_root(sender)
add_library(orvane_sender STATIC ${ORVANE_SENDER_SOURCES})
add_library(orvane::sender ALIAS orvane_sender)
target_include_directories(orvane_sender PUBLIC
    "$<BUILD_INTERFACE:${sender_root}>" "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/orvane>")
target_link_libraries(orvane_sender PRIVATE $<BUILD_INTERFACE:orvane::warnings>)
# A C compiler links it, without a C++ library.
target_compile_options(orvane_sender PRIVATE -fno-exceptions -fno-rtti)
set_target_properties(orvane_sender PROPERTIES OUTPUT_NAME orvane-sender)

orvane_add_folder(config)
target_include_directories(orvane_config PUBLIC "${CMAKE_BINARY_DIR}/generated")
orvane_add_folder(platform SOURCES ${ORVANE_POSIX_SOURCES} ${ORVANE_SYSTEM_SOURCES} BELOW orvane::config Threads::Threads)
orvane_add_folder(log BELOW orvane::platform)
orvane_add_folder(model BELOW orvane::platform)
orvane_add_folder(download BELOW orvane::model orvane::log)
orvane_add_folder(engine BELOW orvane::model orvane::log orvane::sender)
orvane_add_folder(verify BELOW orvane::model orvane::log)
orvane_add_folder(app BELOW orvane::download orvane::engine orvane::verify)

# The parts of a program in the order in which they need each other. platform/ needs besides a desktop half and, on Linux,
# the authorities to believe, which each program chooses: they come after these.
set(ORVANE_PROGRAM orvane::app orvane::download orvane::engine orvane::verify orvane::model orvane::log orvane::platform)

# What stands beside the program includes by the path in the repository.
add_library(orvane_repository INTERFACE)
add_library(orvane::repository ALIAS orvane_repository)
target_include_directories(orvane_repository INTERFACE "${CMAKE_SOURCE_DIR}")
