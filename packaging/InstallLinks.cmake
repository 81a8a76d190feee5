# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT

# A part of "cmake --install": links, and files that refer to the location of the program or of its
# node. The caller sets these variables:
#   bundle          the bundle's folder below the prefix
#   build_info      the description of the build
#   scratch         a folder to work in
#   node            the node to run, an absolute path

# Files copied from here get the usual modes, whatever the umask, and so do their parent folders.
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

# Debian requires links within one top-level folder to be relative. They then also stay within the root
# that the package is installed into.
set(link "${node}")
cmake_path(GET node RELATIVE_PART below_root)
cmake_path(GET CMAKE_INSTALL_PREFIX RELATIVE_PART prefix_below_root)
string(REGEX REPLACE "/.*" "" top "${below_root}")
string(REGEX REPLACE "/.*" "" prefix_top "${prefix_below_root}")
if(top STREQUAL prefix_top)
    file(RELATIVE_PATH link "${CMAKE_INSTALL_PREFIX}/${bundle}/Contents/MacOS" "${node}")
endif()
install_link("${link}" "${bundle}/Contents/MacOS" xrpld)

# The build describes a different node. The version of the installed one is not known here.
file(READ "${build_info}" text)
string(REGEX REPLACE "xrpld_[^\n]*\n" "" text "${text}")
install_text("${bundle}/Contents/Resources" build-info
    "${text}xrpld_kind=linked\nxrpld_path=${node}\n")

include("${CMAKE_CURRENT_LIST_DIR}/Quoting.cmake")
set(program "${CMAKE_INSTALL_PREFIX}/bin/quaymere")
tidewick_quote_for_unit(COMMAND_FOR_UNIT "${program}")
tidewick_quote_for_bus(COMMAND_FOR_BUS "${program}")
tidewick_quote_for_entry(COMMAND_FOR_ENTRY "${program}")
tidewick_escape_for_entry(PROGRAM_FOR_ENTRY "${program}")

function(install_configured template folder name)
    file(READ "${CMAKE_CURRENT_LIST_DIR}/${template}.in" text)
    string(CONFIGURE "${text}" text @ONLY)
    install_text("${folder}" "${name}" "${text}")
endfunction()

foreach(unit app-org.tidewick.Tidewick.service tidewick.service)
    install_configured(${unit} lib/systemd/user ${unit})
endforeach()
install_configured(org.tidewick.Tidewick.service share/dbus-1/services
    org.tidewick.Tidewick.service)
install_configured(org.tidewick.Tidewick.desktop share/applications org.tidewick.Tidewick.desktop)
install_configured(autostart.desktop share/tidewick/autostart org.tidewick.Tidewick.desktop)

# Debian's zsh looks in different folders for completions from packages and for local ones.
set(zsh share/zsh/site-functions)
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    set(zsh share/zsh/vendor-completions)
endif()
file(READ "${CMAKE_CURRENT_LIST_DIR}/completions/quaymere.zsh" text)
install_text("${zsh}" _quaymere "${text}")

file(REMOVE_RECURSE "${scratch}")
