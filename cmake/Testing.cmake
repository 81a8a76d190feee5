# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT

# Code that only tests run: compiled quickly rather than to be quick, and with the large headers read
# once for all of it, which takes the same parts of Qt everywhere.
add_library(tidewick_test_options INTERFACE)
target_link_libraries(tidewick_test_options INTERFACE
    tidewick_options QCoro6::Coro Qt6::DBus Qt6::Network Qt6::Test Qt6::WebSockets Qt6::Widgets)
# Qt also defines two folders that are others for each program, which nothing here reads and which would
# keep the headers from being read once.
set_target_properties(Qt6::Test PROPERTIES INTERFACE_COMPILE_DEFINITIONS QT_TESTLIB_LIB)
# Checked calls of the C library need optimisation.
target_compile_options(tidewick_test_options INTERFACE -O0 -U_FORTIFY_SOURCE)
# The QTRY_ macros of newer Qt, 6.8 for one, narrow the time limit to int, and GCC blames the test. The
# library of its own comes after the one whose warning it takes back.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND Qt6_VERSION VERSION_GREATER_EQUAL 6.5)
    add_library(tidewick_test_warnings INTERFACE)
    target_compile_options(tidewick_test_warnings INTERFACE -Wno-conversion)
    target_link_libraries(tidewick_test_options INTERFACE tidewick_test_warnings)
endif()

# The tests of a folder and the rooms in it as one program, in which each file tst_NAME.cpp is a test of
# ctest's by that name, run in a process of its own. LOOPBACK: those that talk over the network. Where
# processes cannot have a loopback network of their own, such tests take turns, and the time in which one
# waits for its turn counts. With a sanitizer all takes several times as long.
function(tidewick_tests folder)
    cmake_parse_arguments(arg "" "" "TESTS;LOOPBACK;SOURCES;LINK" ${ARGN})
    set(program tests_${folder})
    add_executable(${program} ${arg_SOURCES})
    target_link_libraries(${program} PRIVATE
        tidewick_test_options tidewick_test_support ${arg_LINK})
    tidewick_precompiled(${program} tests)
    foreach(path IN LISTS arg_TESTS arg_LOOPBACK)
        cmake_path(GET path FILENAME name)
        string(REGEX REPLACE "[^/]+$" "tst_\\0.cpp" source "${path}")
        target_sources(${program} PRIVATE ${source})
        add_test(NAME tst_${name} COMMAND ${program} tst_${name})
        set(timeout 120)
        if(path IN_LIST arg_LOOPBACK OR TIDEWICK_SANITIZE)
            set(timeout 600)
        endif()
        # The label says which program ./test has to build for the test. What makes one function fail
        # often makes all of them wait in vain, so after the first failure the others have 10 seconds.
        set_tests_properties(tst_${name} PROPERTIES
            LABELS "program:${program}" TIMEOUT ${timeout} TIMEOUT_AFTER_MATCH "10;FAIL!  :")
    endforeach()
endfunction()

# A library or program that tests share.
function(tidewick_test_part target)
    target_link_libraries(${target} PRIVATE tidewick_test_options)
    tidewick_precompiled(${target} tests)
endfunction()
