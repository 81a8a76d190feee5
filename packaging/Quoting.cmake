# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT

# How the name of a program is written in the files that are installed, whatever is in it. Each
# function sets the variable that its first argument names. A name that every reader takes as it is
# stays so. No format can name a file that is not UTF-8.

function(tidewick_needs_no_quotes variable file)
    set(plain FALSE)
    if(file MATCHES "^[A-Za-z0-9/._+-]+$")
        set(plain TRUE)
    endif()
    set(${variable} ${plain} PARENT_SCOPE)
endfunction()

# A command in a unit of systemd. The colon keeps systemd from looking for variables in it; "%"
# begins a specifier all the same.
function(tidewick_quote_for_unit variable file)
    tidewick_needs_no_quotes(plain "${file}")
    set(quoted "${file}")
    if(NOT plain)
        string(REPLACE "\\" "\\\\" quoted "${quoted}")
        string(REPLACE "\"" "\\\"" quoted "${quoted}")
        string(REPLACE "\n" "\\n" quoted "${quoted}")
        string(REPLACE "%" "%%" quoted "${quoted}")
        set(quoted "\"${quoted}\"")
        # systemd refuses such a program, but takes such an argument. The shell makes way for it.
        if(file MATCHES "[\"'\\\\]")
            set(quoted "/bin/sh -c 'exec \"$0\"' ${quoted}")
        endif()
        set(quoted ":${quoted}")
    endif()
    set(${variable} "${quoted}" PARENT_SCOPE)
endfunction()

# A command in a service file of D-Bus: as a shell quotes it, then as a value. Not every bus takes
# backslashes in values for escapes, so there are none but for those in the name.
function(tidewick_quote_for_bus variable file)
    tidewick_needs_no_quotes(plain "${file}")
    set(quoted "${file}")
    if(NOT plain)
        string(REPLACE "'" "'\"'\"'" quoted "${quoted}")
        tidewick_escape_for_entry(quoted "'${quoted}'")
    endif()
    set(${variable} "${quoted}" PARENT_SCOPE)
endfunction()

# A command in a desktop entry: within double quotes, with "%" for itself, then as a value. The format
# has no programs with "=" in their names. systemd 252, which starts what is in the autostart folder
# on some desktops, does not understand what the format asks for in names with "$", "`", double quotes
# or backslashes.
function(tidewick_quote_for_entry variable file)
    tidewick_needs_no_quotes(plain "${file}")
    set(quoted "${file}")
    if(NOT plain)
        foreach(character "\\" "\"" "`" "$")
            string(REPLACE "${character}" "\\${character}" quoted "${quoted}")
        endforeach()
        string(REPLACE "%" "%%" quoted "${quoted}")
        set(quoted "\"${quoted}\"")
        # Not every desktop starts such a program, but all take such an argument.
        if(file MATCHES "[%\"'\\]")
            set(quoted "/usr/bin/env ${quoted}")
        endif()
        tidewick_escape_for_entry(quoted "${quoted}")
    endif()
    set(${variable} "${quoted}" PARENT_SCOPE)
endfunction()

# A value in a desktop entry that is no command.
function(tidewick_escape_for_entry variable text)
    string(REPLACE "\\" "\\\\" text "${text}")
    string(REPLACE "\n" "\\n" text "${text}")
    set(${variable} "${text}" PARENT_SCOPE)
endfunction()
