// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/TestFiles.h"
#include "support/TestProgram.h"

#include <QCoreApplication>
#include <QtTest>

namespace tidewick {

/// Surroundings of its own for a test program, the same on any machine. HOME, the XDG folders and
/// TMPDIR lie in a temporary folder, which is removed at the end; fonts are those of
/// tests/data/fonts.conf, the language is C, the time UTC; there is no bus, display or desktop. Of
/// the environment nothing else remains but by what programs are found and instrumented, so a test
/// sets what it needs afterwards. Make it before there are threads and the application object.
class TestHome
{
public:
    TestHome();

private:
    TemporaryFolder m_folder;
};

/// Gives this process and its children a loopback network of their own, so that the node's fixed
/// ports are free whatever runs on the machine, other tests included. Where the kernel does not
/// allow that, the process waits its turn for the shared loopback instead. Call before any thread
/// exists.
void enterPrivateLoopback();

/// Lets this process draw into memory, at ratio 1. Call after making the home and before the
/// application object exists.
void drawOffscreen();

} // namespace tidewick

/// Runs the tests of a class that talks to nobody over the network.
#define TIDEWICK_TEST_MAIN(TestClass)                   \
    TIDEWICK_TEST_PROGRAM                               \
    {                                                   \
        const tidewick::TestHome home;                  \
        const QCoreApplication application(argc, argv); \
        TestClass test;                                 \
        return QTest::qExec(&test, argc, argv);         \
    }

/// The same for one that draws. It includes QApplication and links Qt6::Widgets itself.
#define TIDEWICK_GUI_TEST_MAIN(TestClass)           \
    TIDEWICK_TEST_PROGRAM                           \
    {                                               \
        const tidewick::TestHome home;              \
        tidewick::drawOffscreen();                  \
        const QApplication application(argc, argv); \
        TestClass test;                             \
        return QTest::qExec(&test, argc, argv);     \
    }

/// The same for one that talks on loopback.
#define TIDEWICK_LOOPBACK_TEST_MAIN(TestClass)          \
    TIDEWICK_TEST_PROGRAM                               \
    {                                                   \
        tidewick::enterPrivateLoopback();               \
        const tidewick::TestHome home;                  \
        const QCoreApplication application(argc, argv); \
        TestClass test;                                 \
        return QTest::qExec(&test, argc, argv);         \
    }

/// The same for one that does both.
#define TIDEWICK_LOOPBACK_GUI_TEST_MAIN(TestClass)  \
    TIDEWICK_TEST_PROGRAM                           \
    {                                               \
        tidewick::enterPrivateLoopback();           \
        const tidewick::TestHome home;              \
        tidewick::drawOffscreen();                  \
        const QApplication application(argc, argv); \
        TestClass test;                             \
        return QTest::qExec(&test, argc, argv);     \
    }
