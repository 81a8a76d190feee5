# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT

# Writes the bundle's "build-info", lines of key=value. The same sources, tools and node produce the same
# bytes: the date is the commit's, or SOURCE_DATE_EPOCH.

cmake_minimum_required(VERSION 3.25)

function(git_says variable)
    execute_process(COMMAND git -C "${SOURCE_DIR}" ${ARGN}
        OUTPUT_VARIABLE answer RESULT_VARIABLE status
        ERROR_QUIET OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT status EQUAL 0)
        set(answer "")
    endif()
    set(${variable} "${answer}" PARENT_SCOPE)
endfunction()

git_says(commit rev-parse --short=12 HEAD)
git_says(changes status --porcelain --untracked-files=no)
if(NOT commit)
    set(commit "unknown")
elseif(changes)
    string(APPEND commit "-changed")
endif()

if(DEFINED ENV{SOURCE_DATE_EPOCH})
    set(epoch "$ENV{SOURCE_DATE_EPOCH}")
else()
    git_says(epoch log -1 --format=%ct)
endif()
set(date "unknown")
if(epoch MATCHES "^[0-9]+$")
    set(ENV{SOURCE_DATE_EPOCH} "${epoch}")
    string(TIMESTAMP date "%Y-%m-%d" UTC)
endif()

# A node prints its version as the last word of a line such as "xrpld version 2.3.0".
set(status "no node")
if(NODE)
    execute_process(COMMAND "${NODE}" --version
        OUTPUT_VARIABLE answer ERROR_VARIABLE answer RESULT_VARIABLE status TIMEOUT 30)
endif()
set(node_version "unknown")
if(status EQUAL 0 AND answer MATCHES "version ([^ \r\n]+)")
    set(node_version "${CMAKE_MATCH_1}")
endif()

file(CONFIGURE OUTPUT "${OUTPUT}" @ONLY CONTENT
"application_commit=@commit@
application_date=@date@
compiler=@COMPILER@
qt_version=@QT_VERSION@
store=@STORE@
xrpld_kind=@NODE_KIND@
xrpld_version=@node_version@
")
