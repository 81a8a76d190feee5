// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/TestFiles.h"
#include "support/TestProgram.h"

#include <QCoreApplication>
#include <QtTest>

namespace tidewick {

/// A home of its own for a test program: HOME, the XDG folders and TMPDIR lie in a temporary
/// folder, which is removed at the end, so that nothing of the user's is read or written.
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

/// Lets this process draw into memory, at ratio 1, whatever desktop it runs on. Call before the
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
