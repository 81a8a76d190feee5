# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT

# What every target compiles with: standard, warnings, definitions, instrumentation.
add_library(tidewick_options INTERFACE)

target_compile_features(tidewick_options INTERFACE cxx_std_20)

target_compile_options(tidewick_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
    -Wold-style-cast -Woverloaded-virtual -Wextra-semi -Wundef -Wvla)

# GCC 12 sees overlapping copies in assignments of literals to std::string (GCC bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(tidewick_options INTERFACE -Wno-restrict)
endif()

target_compile_definitions(tidewick_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_NO_FOREACH
    _GLIBCXX_ASSERTIONS)

# A package is the same wherever it was built.
if(TIDEWICK_PACKAGE)
    target_compile_options(tidewick_options INTERFACE "-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.")
endif()

if(TIDEWICK_SANITIZE)
    target_compile_options(tidewick_options INTERFACE
        -fsanitize=${TIDEWICK_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(tidewick_options INTERFACE -fsanitize=${TIDEWICK_SANITIZE})
    # Clang 14 cannot emit coroutines with what this check puts before each function.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND TIDEWICK_SANITIZE MATCHES "undefined")
        target_compile_options(tidewick_options INTERFACE -fno-sanitize=function)
    endif()
endif()

if(TIDEWICK_COVERAGE)
    target_compile_options(tidewick_options INTERFACE --coverage)
    target_link_options(tidewick_options INTERFACE --coverage)
endif()

if(TIDEWICK_FUZZ)
    target_compile_options(tidewick_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_AUTOMOC ON)

# With TIDEWICK_PRECOMPILE the large headers are read once for all sources. A plain build goes without,
# so that each file is known to include what it uses.
if(TIDEWICK_PRECOMPILE)
    file(CONFIGURE OUTPUT Headers.cpp CONTENT "")
    add_library(tidewick_headers OBJECT "${CMAKE_CURRENT_BINARY_DIR}/Headers.cpp")
    target_link_libraries(tidewick_headers PRIVATE tidewick_options
        QCoro6::Coro Qt6::Core Qt6::DBus Qt6::Network Qt6::Svg Qt6::WebSockets Qt6::Widgets)
    # Not linked: that would define folders of its own, which differ for each test.
    target_include_directories(tidewick_headers SYSTEM PRIVATE
        $<TARGET_PROPERTY:Qt6::Test,INTERFACE_INCLUDE_DIRECTORIES>)
    target_precompile_headers(tidewick_headers PRIVATE
        <QtCore> <QtDBus> <QtNetwork> <QtTest> <QtWidgets> <qcorotask.h>
        <chrono> <filesystem> <functional> <memory> <optional> <string> <vector>)
endif()

function(tidewick_precompiled target)
    if(TIDEWICK_PRECOMPILE)
        target_precompile_headers(${target} REUSE_FROM tidewick_headers)
    endif()
endfunction()

# One folder of the house is one static library that sees the whole source root; who may know whom is
# said by its link list and checked by .ci/layers.
function(tidewick_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/Quaymere)
    target_link_libraries(${name} PUBLIC tidewick_options ${arg_LINK})
    tidewick_precompiled(${name})
endfunction()
