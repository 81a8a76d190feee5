# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT

# The Debian package, which cpack makes from the installed files and from those in debian/.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tidewick)
set(CPACK_PACKAGE_VENDOR "the Tidewick authors")
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}/package")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

# Some files contain the path of the folder that they are installed in.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${TIDEWICK_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_SECTION net)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "default-dbus-session-bus | dbus-session-bus, libglib2.0-bin, qt6-wayland, wl-clipboard, xdg-utils, xrpld")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS gnome-shell-extension-appindicator)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(store "${TIDEWICK_STORE}, which it must be built with")
if(TIDEWICK_STORE STREQUAL "NuDB")
    set(store "NuDB, which every xrpld has")
endif()
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS debian/description.in)
file(READ debian/description.in description)
string(CONFIGURE "${description}" CPACK_DEBIAN_PACKAGE_DESCRIPTION @ONLY)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "XRP Ledger node for the desktop, small and unattended")

configure_file(debian/changelog.in changelog @ONLY)
configure_file(CompletePackage.cmake.in CompletePackage.cmake @ONLY)
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_BINARY_DIR}/CompletePackage.cmake")
set(CPACK_POST_BUILD_SCRIPTS "${CMAKE_CURRENT_SOURCE_DIR}/EvenOut.cmake")

include(CPack)
