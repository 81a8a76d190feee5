// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/TestFiles.h"
#include "support/TestProgram.h"

#include <QCoreApplication>
#include <QtTest>

namespace tidewick {

/// Isolates a test program from the machine it runs on. HOME, the XDG folders and TMPDIR point into
/// a temporary folder, which is removed at the end. Fonts come from tests/data/fonts.conf, the
/// locale is C, the time zone UTC, and there is no bus, display or desktop. Of the environment,
/// only variables for finding programs and for instrumented builds remain, so a test sets any
/// others afterwards. Create it before any threads and the application object exist.
class TestHome
{
public:
    TestHome();

private:
    TemporaryFolder m_folder;
};

/// Gives this process and its children a private loopback network, so that the node's fixed ports
/// are free whatever else runs on the machine, including other tests. If the kernel does not allow
/// that, the process waits its turn for the shared loopback instead. Call before any thread exists.
void enterPrivateLoopback();

/// Makes this process draw into memory at a device pixel ratio of 1. Call after creating the
/// TestHome and before the application object exists.
void drawOffscreen();

} // namespace tidewick

/// Runs the tests of a class that does not use the network.
#define TIDEWICK_TEST_MAIN(TestClass)                   \
    TIDEWICK_TEST_PROGRAM                               \
    {                                                   \
        const tidewick::TestHome home;                  \
        const QCoreApplication application(argc, argv); \
        TestClass test;                                 \
        return QTest::qExec(&test, argc, argv);         \
    }

/// Like TIDEWICK_TEST_MAIN, for tests that draw. The test includes QApplication and links
/// Qt6::Widgets itself.
#define TIDEWICK_GUI_TEST_MAIN(TestClass)           \
    TIDEWICK_TEST_PROGRAM                           \
    {                                               \
        const tidewick::TestHome home;              \
        tidewick::drawOffscreen();                  \
        const QApplication application(argc, argv); \
        TestClass test;                             \
        return QTest::qExec(&test, argc, argv);     \
    }

/// Like TIDEWICK_TEST_MAIN, for tests that use the loopback network.
#define TIDEWICK_LOOPBACK_TEST_MAIN(TestClass)          \
    TIDEWICK_TEST_PROGRAM                               \
    {                                                   \
        tidewick::enterPrivateLoopback();               \
        const tidewick::TestHome home;                  \
        const QCoreApplication application(argc, argv); \
        TestClass test;                                 \
        return QTest::qExec(&test, argc, argv);         \
    }

/// Like TIDEWICK_TEST_MAIN, for tests that draw and use the loopback network.
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
