# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT

# Repacks the parts of cpack's package, since cpack gives them modes that depend on its umask.

cmake_policy(VERSION 3.25)

set(parts "${CPACK_TOPLEVEL_DIRECTORY}/parts")
foreach(package IN LISTS CPACK_PACKAGE_FILES)
    file(REMOVE_RECURSE "${parts}")
    file(MAKE_DIRECTORY "${parts}")
    foreach(step "x;${package}" "rcD;even.deb;debian-binary;control.tar.gz;data.tar.xz")
        execute_process(COMMAND ar ${step} WORKING_DIRECTORY "${parts}" COMMAND_ERROR_IS_FATAL ANY)
    endforeach()
    file(CHMOD "${parts}/even.deb" PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
    file(RENAME "${parts}/even.deb" "${package}")
endforeach()
