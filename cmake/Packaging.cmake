# What is installed on a Linux machine, and the Debian package that brings it there. `scripts/package` makes it.

include(GNUInstallDirs)

set(ORVANE_PACKAGER "Kestrix <packages@${ORVANE_DOMAIN}>" CACHE STRING "Who answers for the package, with an address")

set(package_files "${CMAKE_BINARY_DIR}/generated/packaging")
set(share "${CMAKE_INSTALL_DATADIR}")
set(documents "${share}/doc/orvane-bootstrap")

foreach(file copyright changelog kestrix.orvane.bootstrap.policy kestrix.orvane.bootstrap.metainfo.xml)
    configure_file("packaging/linux/${file}.in" "${package_files}/${file}" @ONLY)
endforeach()

# Packages hold documents compressed, and by a command that writes no time into them.
set(compressed_files)
foreach(file "${package_files}/changelog" "${CMAKE_SOURCE_DIR}/packaging/man/OrvaneBootstrap.1")
    cmake_path(GET file FILENAME name)
    add_custom_command(OUTPUT "${package_files}/${name}.gz"
        COMMAND gzip --best --no-name --stdout "${file}" > "${package_files}/${name}.gz"
        DEPENDS "${file}" VERBATIM)
    list(APPEND compressed_files "${package_files}/${name}.gz")
endforeach()
add_custom_target(package_documents DEPENDS ${compressed_files})

install(TARGETS OrvaneBootstrap)
install(PROGRAMS packaging/linux/orvane-bootstrap-as-administrator DESTINATION "${CMAKE_INSTALL_LIBEXECDIR}")
install(FILES packaging/linux/orvane-bootstrap.desktop DESTINATION "${share}/applications")
install(DIRECTORY packaging/icons/hicolor DESTINATION "${share}/icons")
install(FILES "${package_files}/kestrix.orvane.bootstrap.policy" DESTINATION "${share}/polkit-1/actions")
install(FILES "${package_files}/kestrix.orvane.bootstrap.metainfo.xml" DESTINATION "${share}/metainfo")
install(FILES "${package_files}/OrvaneBootstrap.1.gz" DESTINATION "${share}/man/man1")
install(FILES "${package_files}/copyright" "${package_files}/changelog.gz" DESTINATION "${documents}")
install(FILES packaging/linux/lintian-overrides DESTINATION "${share}/lintian/overrides" RENAME orvane-bootstrap)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orvane-bootstrap)
set(CPACK_PACKAGE_VENDOR Kestrix)
set(CPACK_PACKAGE_CONTACT "${ORVANE_PACKAGER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "installs the Varlen suite in a window, or removes it")
set(CPACK_PACKAGE_DESCRIPTION "Fetches the vendor's description of the current installer engine, reuses or
downloads, verifies and deciphers that engine, starts it with administrator
rights, and shows its steps, progress, questions and end. It is found in the
desktop's menu; the entry asks for the rights.")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${ORVANE_WEB_SITE}")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "ca-certificates, pkexec") # beside the libraries
set(CPACK_DEBIAN_PACKAGE_SUGGESTS polkit-1-auth-agent) # which desktops bring
include(CPack)
