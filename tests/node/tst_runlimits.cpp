// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/RunLimits.h"
#include "node/Settings.h"
#include "support/Surroundings.h"
#include "support/TestFiles.h"

#include <csignal>
#include <limits>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace tidewick;
using namespace std::chrono_literals;

using Moment = std::optional<SuspendingClock::time_point>;
using Length = std::optional<std::chrono::seconds>;

class TestRunLimits : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void withoutSettings();
    void read_data();
    void read();
    void neverWraps();
    void deadline_data();
    void deadline();

private:
    std::optional<TemporaryFolder> m_folder;
};

void TestRunLimits::init()
{
    m_folder.emplace();
}

void TestRunLimits::withoutSettings()
{
    const RunLimits limits = RunLimits::read(Defaults(m_folder->path() / "settings.ini"));
    QVERIFY(!limits.afterFull);
    QVERIFY(!limits.hardCap);
    QCOMPARE(limits.diskGuardGB, 10.0);
}

void TestRunLimits::read_data()
{
    QTest::addColumn<qint64>("minutes");
    QTest::addColumn<Length>("limit");
    QTest::newRow("none") << qint64(0) << Length();
    QTest::newRow("negative") << qint64(-5) << Length();
    QTest::newRow("one") << qint64(1) << Length(60s);
    QTest::newRow("a week") << qint64(10080) << Length(604800s);
    QTest::newRow("maximum") << std::numeric_limits<qint64>::max() / 60
                             << Length(9223372036854775800s);
}

void TestRunLimits::read()
{
    QFETCH(qint64, minutes);
    QFETCH(Length, limit);
    Defaults defaults(m_folder->path() / "settings.ini");
    defaults.setInteger(Settings::autoStopAfterFullMinutes.key, minutes);
    QCOMPARE(RunLimits::read(defaults).afterFull, limit);
    QVERIFY(!RunLimits::read(defaults).hardCap);
    defaults.setInteger(Settings::autoStopHardCapMinutes.key, minutes);
    QCOMPARE(RunLimits::read(defaults).hardCap, limit);
}

/// A limit whose seconds would overflow ends the program; a wrapped one would stop the node.
void TestRunLimits::neverWraps()
{
    Defaults defaults(m_folder->path() / "settings.ini");
    defaults.setInteger(Settings::autoStopHardCapMinutes.key,
                        std::numeric_limits<qint64>::max() / 60 + 1);
    const pid_t child = ::fork();
    if (child == 0) {
        const rlimit noCore{};
        ::setrlimit(RLIMIT_CORE, &noCore);
        ::signal(SIGABRT, SIG_DFL); // keeps the test framework from reporting the abort
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
        (void)RunLimits::read(defaults);
        ::_exit(0);
    }
    int status = 0;
    QCOMPARE(::waitpid(child, &status, 0), child);
    QVERIFY(WIFSIGNALED(status));
    QCOMPARE(WTERMSIG(status), SIGABRT);
}

void TestRunLimits::deadline_data()
{
    const SuspendingClock::time_point start{1h};
    const Length none;
    const Moment never;
    QTest::addColumn<Length>("afterFull");
    QTest::addColumn<Length>("hardCap");
    QTest::addColumn<Moment>("firstFullAt");
    QTest::addColumn<Moment>("expected");
    const auto at = [&](auto later) { return Moment(start + later); };

    QTest::newRow("no limit") << none << none << at(10s) << never;
    QTest::newRow("hard cap") << none << Length(60s) << never << at(60s);
    QTest::newRow("not full yet") << Length(60s) << none << never << never;
    QTest::newRow("after full") << Length(60s) << none << at(100s) << at(160s);
    QTest::newRow("not full yet, hard cap") << Length(1s) << Length(60s) << never << at(60s);
    QTest::newRow("after full earlier") << Length(60s) << Length(600s) << at(100s) << at(160s);
    QTest::newRow("hard cap earlier") << Length(600s) << Length(600s) << at(100s) << at(600s);
    QTest::newRow("same") << Length(500s) << Length(600s) << at(100s) << at(600s);
    const auto last = Moment(SuspendingClock::time_point::max());
    const Length endless(9223372036854775800s);
    QTest::newRow("beyond the clock") << none << endless << never << last;
    QTest::newRow("both beyond") << endless << endless << at(1s) << last;
    QTest::newRow("one beyond") << endless << Length(60s) << at(1s) << at(60s);
}

void TestRunLimits::deadline()
{
    QFETCH(Length, afterFull);
    QFETCH(Length, hardCap);
    QFETCH(Moment, firstFullAt);
    QFETCH(Moment, expected);
    const RunLimits limits{afterFull, hardCap, 10};
    QCOMPARE(limits.deadline(SuspendingClock::time_point{1h}, firstFullAt), expected);
}

TIDEWICK_TEST_MAIN(TestRunLimits)
#include "tst_runlimits.moc"
