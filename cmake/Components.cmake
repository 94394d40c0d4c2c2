# What is installed for the vendor's engineers, apart from the program and its package: cmake --install build/release
# --component tools, or sender.

include(GNUInstallDirs)

set(tools orvane-message orvane-publish orvane-reports)
install(TARGETS ${tools} COMPONENT tools EXCLUDE_FROM_ALL)
foreach(tool IN LISTS tools)
    install(FILES "packaging/man/${tool}.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT tools EXCLUDE_FROM_ALL)
endforeach()

# For engines built by CMake: find_package(orvane-sender), target orvane::sender.
set_target_properties(orvane_sender PROPERTIES EXPORT_NAME sender)
install(TARGETS orvane_sender EXPORT orvane-sender COMPONENT sender EXCLUDE_FROM_ALL)
install(DIRECTORY sender DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/orvane" COMPONENT sender EXCLUDE_FROM_ALL
    FILES_MATCHING PATTERN "*.h" PATTERN EngineMessageConnection.h EXCLUDE)
install(EXPORT orvane-sender NAMESPACE orvane:: FILE orvane-sender-config.cmake
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/orvane-sender" COMPONENT sender EXCLUDE_FROM_ALL)
# For engines built otherwise: pkg-config. The file finds headers and library from its own place, whatever the prefix is.
set(pkgconfig "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH ORVANE_SENDER_PREFIX "/prefix/${pkgconfig}" "/prefix")
string(REGEX REPLACE "/$" "" ORVANE_SENDER_PREFIX "${ORVANE_SENDER_PREFIX}")
configure_file(sender/orvane-sender.pc.in generated/orvane-sender.pc @ONLY)
install(FILES "${CMAKE_BINARY_DIR}/generated/orvane-sender.pc" DESTINATION "${pkgconfig}"
    COMPONENT sender EXCLUDE_FROM_ALL)
install(FILES LICENSE DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT sender EXCLUDE_FROM_ALL)
install(FILES LICENSE DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT tools EXCLUDE_FROM_ALL)
