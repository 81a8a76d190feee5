// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/process/ChildProcess.h"
#include "platform/process/DeathWatch.h"
#include "support/Surroundings.h"

#include <QElapsedTimer>
#include <QSignalSpy>

#include <csignal>
#include <optional>

#include <fcntl.h>

using namespace tidewick;
using namespace std::chrono_literals;

/// Tests what happens to children when the program that started them dies.
class TestDeathWatch : public QObject
{
    Q_OBJECT

private slots:
    void signalsOnceWhenTheProgramIsKilled_data();
    void signalsOnceWhenTheProgramIsKilled();
    void signalsOnceWhenDestroyed();
    void signalsOnceHoweverOftenTold();
    void killsAfterTheTimeout_data();
    void killsAfterTheTimeout();
    void laterProgramSeesTheLock();
    void leavesOthersAlone();
    void holdsNoStreams();

private:
    /// A child that counts the SIGTERMs it receives and writes the number to the given file.
    ChildSpec counting(const std::filesystem::path &output);

    TemporaryFolder m_folder;
    UniqueDescriptor m_output;
};

ChildSpec TestDeathWatch::counting(const std::filesystem::path &output)
{
    m_output =
        UniqueDescriptor(::open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    ChildSpec spec;
    spec.executable = TIDEWICK_CHILD_PATH;
    spec.arguments = {"count-terminate"};
    spec.standardOutput = m_output.get();
    return spec;
}

void TestDeathWatch::signalsOnceWhenTheProgramIsKilled_data()
{
    QTest::addColumn<int>("signalNumber");
    QTest::newRow("killed") << SIGKILL;
    QTest::newRow("crashed") << SIGSEGV;
    QTest::newRow("terminated") << SIGTERM;
}

void TestDeathWatch::signalsOnceWhenTheProgramIsKilled()
{
    QFETCH(int, signalNumber);
    const std::filesystem::path output = m_folder.path() / "output";
    for (int round = 0; round < 5; ++round) {
        ChildSpec spec = counting(output);
        spec.executable = TIDEWICK_PARENT_PATH;
        spec.arguments = {TIDEWICK_CHILD_PATH, "count-terminate", (m_folder.path() / "id").string(),
                          (m_folder.path() / "lock").string()};
        const auto parent = ChildProcess::start(spec);
        QTRY_VERIFY(contentOf(output) == "ready\n");
        ::kill(parent->id(), signalNumber);
        QTRY_COMPARE(contentOf(output), "ready\ntold 1\n");
    }
}

void TestDeathWatch::signalsOnceWhenDestroyed()
{
    const std::filesystem::path output = m_folder.path() / "output";
    std::optional<DeathWatch> watch(std::in_place);
    ChildSpec spec = counting(output);
    spec.deathWatch = &*watch;
    const auto child = ChildProcess::start(spec);
    QTRY_VERIFY(contentOf(output) == "ready\n");
    const QSignalSpy ended(child.get(), &ChildProcess::exited);
    watch.reset();
    QTRY_COMPARE(ended.size(), 1);
    QCOMPARE(contentOf(output), "ready\ntold 1\n");
}

void TestDeathWatch::signalsOnceHoweverOftenTold()
{
    const std::filesystem::path output = m_folder.path() / "output";
    std::optional<DeathWatch> watch(std::in_place);
    ChildSpec spec = counting(output);
    spec.deathWatch = &*watch;
    const auto child = ChildProcess::start(spec);
    QTRY_VERIFY(contentOf(output) == "ready\n");
    child->terminate();
    child->terminate();
    watch.reset();
    QCOMPARE(contentOf(output), "ready\ntold 1\n");
}

void TestDeathWatch::killsAfterTheTimeout_data()
{
    QTest::addColumn<bool>("isTold");
    QTest::newRow("signalled by the watchdog") << false;
    QTest::newRow("signalled by the program") << true;
}

void TestDeathWatch::killsAfterTheTimeout()
{
    QFETCH(bool, isTold);
    const std::filesystem::path output = m_folder.path() / "output";
    std::optional<DeathWatch> watch(std::in_place, std::filesystem::path(), 1s);
    ChildSpec spec = counting(output);
    spec.arguments = {"ignore-terminate"};
    spec.deathWatch = &*watch;
    const auto child = ChildProcess::start(spec);
    QTRY_VERIFY(contentOf(output) == "ready\n");
    if (isTold)
        child->terminate();
    const QSignalSpy ended(child.get(), &ChildProcess::exited);
    QElapsedTimer timer;
    timer.start();
    watch.reset();
    QVERIFY(timer.elapsed() >= 1000);
    QTRY_COMPARE(ended.size(), 1);
    QCOMPARE(ended[0][0].toInt(), SIGKILL);
    QVERIFY(ended[0][1].toBool());
}

void TestDeathWatch::laterProgramSeesTheLock()
{
    const std::filesystem::path lock = m_folder.path() / "lock";
    const std::filesystem::path output = m_folder.path() / "output";
    ChildSpec spec = counting(output);
    spec.executable = TIDEWICK_PARENT_PATH;
    spec.arguments = {TIDEWICK_CHILD_PATH, "count-terminate", (m_folder.path() / "id").string(),
                      lock.string()};
    const auto program = ChildProcess::start(spec);
    QTRY_VERIFY(contentOf(output) == "ready\n");
    const DeathWatch later(lock);
    QVERIFY(!later.isAlone());
    ::kill(program->id(), SIGKILL);
    program->wait();
    QVERIFY(!later.isAlone());
    QTRY_VERIFY(later.isAlone());
    QCOMPARE(contentOf(output), "ready\ntold 1\n");
    QVERIFY(DeathWatch("/no/such/folder/lock").isAlone());
}

void TestDeathWatch::leavesOthersAlone()
{
    const std::filesystem::path output = m_folder.path() / "output";
    std::optional<DeathWatch> watch(std::in_place);
    const auto child = ChildProcess::start(counting(output)); // not guarded by the watchdog process
    QTRY_VERIFY(contentOf(output) == "ready\n");
    watch.reset();
    QCOMPARE(contentOf(output), "ready\n");
    const QSignalSpy ended(child.get(), &ChildProcess::exited);
    child->terminate();
    QTRY_COMPARE(ended.size(), 1);
    QCOMPARE(contentOf(output), "ready\ntold 1\n");
}

/// Programs that read a pipe to its end must not have to wait for the watchdog process.
void TestDeathWatch::holdsNoStreams()
{
    std::array<int, 2> ends{};
    QCOMPARE(::pipe2(ends.data(), O_CLOEXEC), 0);
    const UniqueDescriptor read(ends[0]);
    UniqueDescriptor write(ends[1]);
    const DeathWatch watch;
    write.reset();
    char byte = 0;
    QCOMPARE(::read(read.get(), &byte, 1), ssize_t{0});
}

TIDEWICK_TEST_MAIN(TestDeathWatch)
#include "tst_deathwatch.moc"
