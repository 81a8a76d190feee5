# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT

# The options that every target is compiled with: standard, warnings, definitions, instrumentation.
add_library(tidewick_options INTERFACE)

target_compile_features(tidewick_options INTERFACE cxx_std_20)

target_compile_options(tidewick_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
    -Wold-style-cast -Woverloaded-virtual -Wextra-semi -Wundef -Wvla)

# GCC 12 wrongly sees overlapping copies in assignments of literals to std::string (GCC bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(tidewick_options INTERFACE -Wno-restrict)
endif()

target_compile_definitions(tidewick_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_NO_FOREACH
    QT_DISABLE_DEPRECATED_UP_TO=0x060800
    _GLIBCXX_ASSERTIONS)

# A package is identical wherever it is built.
if(TIDEWICK_PACKAGE)
    target_compile_options(tidewick_options INTERFACE "-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.")
endif()

if(TIDEWICK_SANITIZE)
    target_compile_options(tidewick_options INTERFACE
        -fsanitize=${TIDEWICK_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(tidewick_options INTERFACE -fsanitize=${TIDEWICK_SANITIZE})
    # Clang 14 cannot emit coroutines with the data that this check puts before each function.
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

# GCC's results are cached if ccache is installed. It only caches files with precompiled headers if told
# that their macros and times do not matter, and GCC then has to keep the header's name in preprocessed
# code.
find_program(TIDEWICK_CCACHE ccache)
if(TIDEWICK_CCACHE AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
        "${TIDEWICK_CCACHE}")
    target_compile_options(tidewick_options INTERFACE -fpch-preprocess)
endif()

# Parsing Qt's headers takes longer than compiling most of our files, so they are precompiled once for
# each kind of code: `core` without a user interface, `widgets` with one, and `tests`. .ci/headers checks
# that each of our own headers includes what it uses. A package is built without precompiled headers, as
# a check of the sources.
function(tidewick_precompiled target kind)
    if(NOT TIDEWICK_PACKAGE)
        target_precompile_headers(${target} REUSE_FROM tidewick_headers_${kind})
        # The same option as for the precompiled headers, or GCC would parse them again. Programs get
        # -fPIE, which Qt 6.4 removes and later versions do not.
        target_compile_options(${target} PRIVATE -fPIC)
    endif()
endfunction()

function(tidewick_headers kind)
    cmake_parse_arguments(arg "" "" "LINK;HEADERS" ${ARGN})
    set(source "${CMAKE_CURRENT_BINARY_DIR}/headers/${kind}.cpp")
    file(CONFIGURE OUTPUT "${source}" CONTENT "")
    add_library(tidewick_headers_${kind} OBJECT "${source}")
    set_target_properties(tidewick_headers_${kind} PROPERTIES AUTOMOC OFF)
    target_link_libraries(tidewick_headers_${kind} PRIVATE ${arg_LINK})
    target_precompile_headers(tidewick_headers_${kind} PRIVATE ${arg_HEADERS})
endfunction()

if(NOT TIDEWICK_PACKAGE)
    set(standard <algorithm> <array> <chrono> <filesystem> <functional> <map> <memory> <optional> <string>
        <vector>)
    set(core <QByteArray> <QCoro/QCoroTask> <QDateTime> <QJsonArray> <QJsonDocument> <QJsonObject>
        <QLoggingCategory> <QObject> <QPointer> <QString> <QStringList> <QTimer> <QUrl> <QVariant>)
    set(widgets <QApplication> <QBoxLayout> <QIcon> <QLabel> <QMenu> <QPainter> <QPalette> <QTextLayout>
        <QWidget> <QtEvents>)
    tidewick_headers(core LINK tidewick_options QCoro6::Coro Qt6::Core
        HEADERS ${standard} ${core})
    tidewick_headers(widgets LINK tidewick_options QCoro6::Coro Qt6::Widgets
        HEADERS ${standard} ${core} ${widgets})
    target_compile_definitions(tidewick_headers_widgets PRIVATE QT_STATICPLUGIN)
endif()

# Makes a folder of Quaymere a static library whose include path is the whole source root. Its link list
# determines which other folders it may use, and .ci/layers checks that. All of
# them use the libraries of the precompiled headers. WIDGETS: the library draws.
function(tidewick_library name)
    cmake_parse_arguments(arg "WIDGETS" "" "SOURCES;LINK" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/Quaymere)
    target_link_libraries(${name} PUBLIC tidewick_options QCoro6::Coro Qt6::Core ${arg_LINK})
    if(arg_WIDGETS)
        target_link_libraries(${name} PUBLIC Qt6::Widgets)
        # Qt's headers use this to decide how plugins are built: ours is part of the program.
        target_compile_definitions(${name} PRIVATE QT_STATICPLUGIN)
        tidewick_precompiled(${name} widgets)
    else()
        tidewick_precompiled(${name} core)
    endif()
endfunction()
