// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/process/StandardStreams.h"
#include "support/Surroundings.h"
#include "ui/terminal/TerminalRig.h"

#include <csignal>

#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

using namespace tidewick;

/// Errors on a terminal, the end of a run, and terminals that are simple, closed or not available.
class TestTerminalFaceEnds : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void printsAnErrorOnceAboveTheRows();
    void repeatsAnErrorThatComesBack();
    void longErrors();
    void endsOnAFreshLine();
    void writesNothingIfNothingWasShown();
    void simpleTerminalsGetLines_data();
    void simpleTerminalsGetLines();
    void closedWindow();
    void suspendedOutput();
    void inTheBackground();
};

void TestTerminalFaceEnds::init()
{
    StandardStreams::prepare();
    qputenv("TERM", "xterm-256color");
}

void TestTerminalFaceEnds::printsAnErrorOnceAboveTheRows()
{
    Started started(80, 14);
    started.shown(sampleStatus());
    NodeStatus status = sampleStatus();
    QStringList text;
    QList<QString> expected = prompt;
    for (int i = 0; i < 50; ++i) {
        text.append(QStringLiteral("\x1b[31m%1:\twrong\x07\u009b2J\x7f").arg(i));
        expected.append(QStringLiteral(" [31m%1: wrong  2J").arg(i));
    }
    text[7] += QString(100, u'x');
    expected[8] += u' ' + QString(62, u'x');
    expected.insert(9, QString(38, u'x'));
    status.errorText = text.join(QStringLiteral("\r\n")) + u'\n';
    QCOMPARE(started.shown(status), expected + sampleRows());

    status.peers = 4;
    QList<QString> rows = sampleRows();
    rows[4] = QStringLiteral("Peers: 4");
    QCOMPARE(started.shown(status), expected + rows);
    QCOMPARE(started.terminal.screen().screen(), expected.last(2) + rows);
    QCOMPARE(started.terminal.screen().strangeSequences(), QList<QString>());
}

void TestTerminalFaceEnds::repeatsAnErrorThatComesBack()
{
    Started started;
    NodeStatus status = sampleStatus();
    const QList<QString> rows = sampleRows();
    for (const char *error : {"one", "one", "two", "", "two"}) {
        status.errorText.reset();
        if (*error)
            status.errorText = QLatin1String(error);
        started.face->show(status);
    }
    const QList<QString> told{QStringLiteral("one"), QStringLiteral("two"), QStringLiteral("two")};
    QCOMPARE(started.terminal.screen().everything(), prompt + (told + rows));
}

void TestTerminalFaceEnds::longErrors()
{
    Started started;
    NodeStatus status = sampleStatus();
    status.errorText = QString(1 << 20, u'x');
    QList<QString> expected(12, QString(80, u'x'));
    expected.append(QString(39, u'x') + u'…');
    QCOMPARE(started.shown(status), prompt + (expected + sampleRows()));

    status.errorText = QStringLiteral("x\n").repeated(1 << 19);
    const QList<QString> lines = started.shown(status);
    QCOMPARE(lines.count(QStringLiteral("x")), 500);
    QCOMPARE(lines.count(QStringLiteral("…")), 1);
}

void TestTerminalFaceEnds::endsOnAFreshLine()
{
    Started started;
    started.shown(sampleStatus());
    started.terminal.write("^C");
    started.face.reset();
    const ScreenModel &screen = started.terminal.screen();
    QCOMPARE(screen.everything(), prompt + sampleRows());
    QCOMPARE(screen.cursor(), qMakePair(sampleRows().size() + 1, 0));
    QVERIFY(screen.wraps());
}

void TestTerminalFaceEnds::writesNothingIfNothingWasShown()
{
    Started started;
    const qsizetype received = started.terminal.received();
    started.face.reset();
    QCOMPARE(started.terminal.received(), received);
}

void TestTerminalFaceEnds::simpleTerminalsGetLines_data()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::newRow("dumb") << QByteArray("dumb");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("none") << QByteArray();
}

void TestTerminalFaceEnds::simpleTerminalsGetLines()
{
    QFETCH(QByteArray, kind);
    if (kind.isNull())
        qunsetenv("TERM");
    else
        qputenv("TERM", kind);
    Started started;
    started.face->show({});
    NodeStatus status = sampleStatus();
    status.errorText = QStringLiteral("a\nb");
    started.face->show(status);
    started.face.reset();
    const QList<QString> expected{
        prompt.constFirst(), QStringLiteral("Stopped"),
        QStringLiteral("Full · Following mainnet · Storage: next trim after 2.0 GB"),
        QStringLiteral("a"), QStringLiteral("b")};
    QCOMPARE(started.terminal.screen().everything(), expected);
}

void TestTerminalFaceEnds::closedWindow()
{
    Started started;
    started.shown(sampleStatus());
    started.terminal.hangUp();
    started.face->show({});
    started.face->show(sampleStatus());
    started.face.reset();
}

/// Ctrl-S suspends a terminal's output until Ctrl-Q.
void TestTerminalFaceEnds::suspendedOutput()
{
    Started started;
    started.shown(sampleStatus());
    ::tcflow(started.terminal.descriptor(), TCOOFF);
    NodeStatus status = sampleStatus();
    for (int peers = 0; peers < 1000; ++peers) {
        status.peers = peers;
        started.face->show(status);
    }
    ::tcflow(started.terminal.descriptor(), TCOON);
    QList<QString> rows = sampleRows();
    rows[4] = QStringLiteral("Peers: 999");
    QTRY_COMPARE(started.terminal.screen().everything(), prompt + rows);
}

/// A child process whose controlling terminal has another process group in the foreground.
void TestTerminalFaceEnds::inTheBackground()
{
    Started started;
    const int descriptor = started.terminal.descriptor();
    const pid_t child = ::fork();
    QVERIFY(child >= 0);
    if (child == 0) {
        const bool owned = ::setsid() > 0 && ::ioctl(descriptor, TIOCSCTTY, 0) == 0;
        started.face->show({});
        const pid_t front = ::fork();
        if (front == 0) {
            ::pause();
            ::_exit(0);
        }
        const bool behind = ::setpgid(front, front) == 0 && ::tcsetpgrp(descriptor, front) == 0;
        started.face->show(sampleStatus());
        started.face.reset();
        ::kill(front, SIGKILL);
        ::waitpid(front, nullptr, 0);
        // A session leader that exits with a controlling terminal hangs it up for everybody.
        ::signal(SIGHUP, SIG_IGN);
        ::ioctl(descriptor, TIOCNOTTY);
        ::_exit(owned && behind ? 0 : 1);
    }
    int status = -1;
    QCOMPARE(::waitpid(child, &status, 0), child);
    QCOMPARE(status, 0);
    const QList<QString> lines = started.terminal.screen().everything();
    QCOMPARE(lines.last(2),
             (QList<QString>{
                 QStringLiteral("Ctrl-C quits"),
                 QStringLiteral("Full · Following mainnet · Storage: next trim after 2.0 GB")}));
}

TIDEWICK_TEST_MAIN(TestTerminalFaceEnds)
#include "tst_terminalface_ends.moc"
