# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT

# Quotes a program's file name for the installed files, whatever characters it has. Each function sets
# the variable that its first argument names. A name that needs no quotes in any format stays as it is.
# None of the formats can express a file name that is not UTF-8.

function(tidewick_needs_no_quotes variable file)
    set(plain FALSE)
    if(file MATCHES "^[A-Za-z0-9/._+-]+$")
        set(plain TRUE)
    endif()
    set(${variable} ${plain} PARENT_SCOPE)
endfunction()

# A command in a systemd unit. The colon keeps systemd from expanding variables in it, but "%" still
# begins a specifier.
function(tidewick_quote_for_unit variable file)
    tidewick_needs_no_quotes(plain "${file}")
    set(quoted "${file}")
    if(NOT plain)
        string(REPLACE "\\" "\\\\" quoted "${quoted}")
        string(REPLACE "\"" "\\\"" quoted "${quoted}")
        string(REPLACE "\n" "\\n" quoted "${quoted}")
        string(REPLACE "%" "%%" quoted "${quoted}")
        set(quoted "\"${quoted}\"")
        # systemd rejects such a name as a program, but accepts it as an argument. The shell replaces
        # itself with the program.
        if(file MATCHES "[\"'\\\\]")
            set(quoted "/bin/sh -c 'exec \"$0\"' ${quoted}")
        endif()
        set(quoted ":${quoted}")
    endif()
    set(${variable} "${quoted}" PARENT_SCOPE)
endfunction()

# A command in a D-Bus service file: quoted as for a shell, then escaped as a value. Not every bus treats
# backslashes in values as escapes, so this adds none except for those in the name.
function(tidewick_quote_for_bus variable file)
    tidewick_needs_no_quotes(plain "${file}")
    set(quoted "${file}")
    if(NOT plain)
        string(REPLACE "'" "'\"'\"'" quoted "${quoted}")
        tidewick_escape_for_entry(quoted "'${quoted}'")
    endif()
    set(${variable} "${quoted}" PARENT_SCOPE)
endfunction()

# A command in a desktop entry: in double quotes, with "%" doubled, then escaped as a value. The format
# does not allow "=" in the name of a program. systemd 252, which starts autostart entries on some
# desktops, does not understand the escapes that the format requires for "$", "`", double quotes and
# backslashes.
function(tidewick_quote_for_entry variable file)
    tidewick_needs_no_quotes(plain "${file}")
    set(quoted "${file}")
    if(NOT plain)
        foreach(character "\\" "\"" "`" "$")
            string(REPLACE "${character}" "\\${character}" quoted "${quoted}")
        endforeach()
        string(REPLACE "%" "%%" quoted "${quoted}")
        set(quoted "\"${quoted}\"")
        # Not every desktop can start such a program, but all accept the name as an argument.
        if(file MATCHES "[%\"'\\]")
            set(quoted "/usr/bin/env ${quoted}")
        endif()
        tidewick_escape_for_entry(quoted "${quoted}")
    endif()
    set(${variable} "${quoted}" PARENT_SCOPE)
endfunction()

# A value in a desktop entry, other than a command.
function(tidewick_escape_for_entry variable text)
    string(REPLACE "\\" "\\\\" text "${text}")
    string(REPLACE "\n" "\\n" text "${text}")
    set(${variable} "${text}" PARENT_SCOPE)
endfunction()
