# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT

# A part of "cmake --install": links, and files that name where the program is installed or which
# node it runs. Whoever includes it sets
#   bundle          the bundle's folder below the prefix
#   build_info      the description of the build
#   scratch         a folder to work in
#   node            the node to run, an absolute path

# What is copied from here gets the usual modes, whatever the umask is, and so do the folders above.
string(RANDOM LENGTH 12 unique)
set(scratch "${scratch}/install-${unique}")
file(MAKE_DIRECTORY "${scratch}")

function(install_text folder name text)
    file(WRITE "${scratch}/${name}" "${text}")
    file(INSTALL "${scratch}/${name}" DESTINATION "${CMAKE_INSTALL_PREFIX}/${folder}")
endfunction()

function(install_link target folder name)
    file(CREATE_LINK "${target}" "${scratch}/${name}" SYMBOLIC)
    file(INSTALL "${scratch}/${name}" DESTINATION "${CMAKE_INSTALL_PREFIX}/${folder}")
endfunction()

install_link("../${bundle}/Contents/MacOS/Quaymere" bin quaymere)

# Within one top-level folder Debian wants links to be relative, and they then keep to the root that
# the package is installed into.
set(link "${node}")
cmake_path(GET node RELATIVE_PART below_root)
cmake_path(GET CMAKE_INSTALL_PREFIX RELATIVE_PART prefix_below_root)
string(REGEX REPLACE "/.*" "" top "${below_root}")
string(REGEX REPLACE "/.*" "" prefix_top "${prefix_below_root}")
if(top STREQUAL prefix_top)
    file(RELATIVE_PATH link "${CMAKE_INSTALL_PREFIX}/${bundle}/Contents/MacOS" "${node}")
endif()
install_link("${link}" "${bundle}/Contents/MacOS" xrpld)

# The node in the build is another, and this one's version is its own affair.
file(READ "${build_info}" text)
string(REGEX REPLACE "xrpld_[^\n]*\n" "" text "${text}")
install_text("${bundle}/Contents/Resources" build-info
    "${text}xrpld_kind=linked\nxrpld_path=${node}\n")

set(TIDEWICK_COMMAND "${CMAKE_INSTALL_PREFIX}/bin/quaymere")
foreach(template
        share/dbus-1/services/org.tidewick.Tidewick
        lib/systemd/user/app-org.tidewick.Tidewick
        lib/systemd/user/tidewick)
    cmake_path(GET template PARENT_PATH folder)
    cmake_path(GET template FILENAME name)
    file(READ "${CMAKE_CURRENT_LIST_DIR}/${name}.service.in" text)
    string(CONFIGURE "${text}" text @ONLY)
    install_text("${folder}" "${name}.service" "${text}")
endforeach()

# Where Debian's zsh looks for what packages bring, and for what is local.
set(zsh share/zsh/site-functions)
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    set(zsh share/zsh/vendor-completions)
endif()
file(READ "${CMAKE_CURRENT_LIST_DIR}/completions/quaymere.zsh" text)
install_text("${zsh}" _quaymere "${text}")

file(REMOVE_RECURSE "${scratch}")
