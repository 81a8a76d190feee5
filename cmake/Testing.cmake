# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT

# Options for code that only tests run. It is optimised for compile time, not for speed. All of it shares
# one set of precompiled headers, which requires the same parts of Qt everywhere.
add_library(tidewick_test_options INTERFACE)
target_link_libraries(tidewick_test_options INTERFACE
    tidewick_options QCoro6::Coro Qt6::DBus Qt6::Network Qt6::Test Qt6::WebSockets Qt6::Widgets)
# Qt6::Test also defines two folders that differ from program to program. Nothing here reads them, and
# they would prevent the precompiled headers from being shared.
set_target_properties(Qt6::Test PROPERTIES INTERFACE_COMPILE_DEFINITIONS QT_TESTLIB_LIB)
# Checked calls of the C library need optimisation.
target_compile_options(tidewick_test_options INTERFACE -O0 -U_FORTIFY_SOURCE)
# Links in a sixth of the time. The program itself is linked as a package is.
check_linker_flag(CXX -fuse-ld=lld TIDEWICK_HAS_lld)
if(TIDEWICK_HAS_lld)
    target_link_options(tidewick_test_options INTERFACE -fuse-ld=lld)
endif()
# The QTRY_ macros of newer Qt versions, such as 6.8, narrow the timeout to int, and GCC blames the test.
# A separate library puts this option after the one that enables the warning.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND Qt6_VERSION VERSION_GREATER_EQUAL 6.5)
    add_library(tidewick_test_warnings INTERFACE)
    target_compile_options(tidewick_test_warnings INTERFACE -Wno-conversion)
    target_link_libraries(tidewick_test_options INTERFACE tidewick_test_warnings)
endif()

# Builds the tests of a folder and its subfolders as one program. Each file tst_NAME.cpp in it is a test
# for ctest by that name, run in its own process. LOOPBACK: tests that use the network. If processes
# cannot have their own loopback network, these tests run one at a time, and the time a test waits for
# its turn counts towards its timeout. With a sanitizer, everything takes several times as long.
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
        # The label tells ./test which program to build for the test. The cause of one failed function
        # often makes all the others run into their timeouts, so after the first failure they have 10
        # seconds.
        set_tests_properties(tst_${name} PROPERTIES
            LABELS "program:${program}" TIMEOUT ${timeout} TIMEOUT_AFTER_MATCH "10;FAIL!  :")
    endforeach()
endfunction()

# A library or program that tests share.
function(tidewick_test_part target)
    target_link_libraries(${target} PRIVATE tidewick_test_options)
    tidewick_precompiled(${target} tests)
endfunction()
