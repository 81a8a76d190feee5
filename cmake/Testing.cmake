# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT

# A test program of one class, run by ctest as one test. LOOPBACK: it talks over the network. Where
# processes cannot have a loopback network of their own, such tests take turns, and the time in
# which one waits for its turn counts. With a sanitizer all takes several times as long.
function(tidewick_test name)
    cmake_parse_arguments(arg "LOOPBACK" "" "SOURCES;LINK" ${ARGN})
    set(timeout 120)
    if(arg_LOOPBACK OR TIDEWICK_SANITIZE)
        set(timeout 600)
    endif()
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE tidewick_test_support ${arg_LINK})
    tidewick_precompiled(${name})
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT ${timeout})
endfunction()
