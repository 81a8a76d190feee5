// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "application/Desktop.h"
#include "support/Surroundings.h"

#include <QAccessible>
#include <QStringList>
#include <QThread>

#include <memory>

namespace tidewick {

class ScreenReaderService;

/// What screen readers learn from the windows of this process while this object exists. There can
/// be only one.
class SpeechLog
{
public:
    SpeechLog();
    SpeechLog(const SpeechLog &) = delete;
    SpeechLog &operator=(const SpeechLog &) = delete;
    ~SpeechLog();

    /// What a screen reader would speak since the last call, after all pending events: "focus ROLE
    /// NAME" for a new focus, without repetitions, and "notice TEXT" for what should be said at
    /// once.
    QStringList spoken();

    /// The objects that reported a new name since the last call, by that name.
    QStringList renamed();

private:
    static void note(QAccessibleEvent *event);

    QAccessible::UpdateHandler m_before;
};

/// A desktop with a screen reader, as far as the windows of this process can tell. Create it before
/// the application object.
class ScreenReaderDesktop
{
public:
    ScreenReaderDesktop();
    ScreenReaderDesktop(const ScreenReaderDesktop &) = delete;
    ScreenReaderDesktop &operator=(const ScreenReaderDesktop &) = delete;
    ~ScreenReaderDesktop();

    /// Waits until the windows report what happens in them. Needs the application object.
    void startReader();

private:
    SessionBus m_bus;
    XServer m_screen;
    /// The windows wait for an answer from the screen reader, which lives in this thread.
    QThread m_thread;
    std::unique_ptr<ScreenReaderService> m_reader;
};

/// An object as a screen reader would name it: role, name and, if it has one, value.
QString spokenName(const QAccessibleInterface &object);

} // namespace tidewick

/// Like TIDEWICK_GUI_TEST_MAIN, on a desktop with a screen reader.
#define TIDEWICK_SPEECH_TEST_MAIN(TestClass)        \
    TIDEWICK_TEST_PROGRAM                           \
    {                                               \
        const tidewick::TestHome home;              \
        tidewick::ScreenReaderDesktop desktop;      \
        const QApplication application(argc, argv); \
        desktop.startReader();                      \
        TestClass test;                             \
        return QTest::qExec(&test, argc, argv);     \
    }
