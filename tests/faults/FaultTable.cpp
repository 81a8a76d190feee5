// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "faults/FaultTable.h"

#include "faults/FaultRun.h"
#include "support/PeakMemory.h"
#include "support/Surroundings.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QProcess>
#include <QThread>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <deque>
#include <memory>

#include <sys/prctl.h>
#include <unistd.h>

namespace tidewick {

namespace {

/// The exit status of a row's process.
enum Verdict { Holds = 0, Failed = 1, Skipped = 77 };

constexpr const char *rowArgument = "--row";
/// A row that takes this long has failed, however slow the machine.
constexpr unsigned rowSeconds = 300;
constexpr unsigned longRowSeconds = 900;
/// A row spends most of its time waiting, unless a sanitizer slows everything down.
constexpr std::size_t rowsPerCore = PeakMemory::hasSanitizer ? 3 : 8;

/// Runs one row, in its own process.
int tryRow(const Fault &fault, int &argc, char **argv)
{
    enterPrivateLoopback();
    ::alarm(fault.isLong ? longRowSeconds : rowSeconds);
    // Orphans become children of this process, so that they can be counted.
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);
    const TestHome home;
    const QCoreApplication application(argc, argv);
    FaultRun run;
    try {
        fault.trial(run);
        run.conclude();
    } catch (const std::exception &error) {
        run.expect(false, QByteArray("the trial throws nothing, unlike: ") + error.what());
    }
    if (!run.holds())
        std::fputs(run.details().constData(), stderr);
    std::fputs(run.report().constData(), stdout);
    if (run.isSkipped())
        return Skipped;
    return run.holds() ? Holds : Failed;
}

QByteArray cell(QByteArray text)
{
    return text.replace('|', '/').replace('\n', ' ').trimmed();
}

/// A running row, as seen by the group.
class Row
{
public:
    Row(const Fault &fault, std::size_t number) : m_fault(fault)
    {
        // If the group is killed, its rows are killed too.
        m_process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
        m_process.start(QCoreApplication::applicationFilePath(),
                        {QString::fromLatin1(rowArgument), QString::number(number)},
                        QIODevice::ReadOnly);
    }

    QProcess &process() { return m_process; }

    bool hasEnded() const { return m_process.state() == QProcess::NotRunning; }

    /// Prints the row of the table. Returns false if the row failed.
    bool print(const char *group)
    {
        const bool ended = m_process.exitStatus() == QProcess::NormalExit;
        const int code = m_process.exitCode();
        QByteArray seen = m_process.readAllStandardOutput();
        if (!ended) {
            seen = code == SIGALRM ? QByteArray("came to no end")
                                   : "the row died of signal " + QByteArray::number(code);
        }
        const bool holds = ended && (code == Holds || code == Skipped);
        const char *verdict = !holds ? "FAILED" : code == Skipped ? "not tried" : "holds";
        std::printf("| %s | %s | %s | %s | %s |\n", group, cell(m_fault.name).constData(),
                    cell(m_fault.expected).constData(), cell(seen).constData(), verdict);
        std::fflush(stdout);
        if (!holds)
            std::fputs(m_process.readAllStandardError().constData(), stderr);
        return holds;
    }

private:
    const Fault &m_fault;
    QProcess m_process;
};

std::deque<std::size_t> chosen(const std::vector<Fault> &faults, bool withLong,
                               const QByteArray &only)
{
    std::deque<std::size_t> numbers;
    for (std::size_t number = 0; number < faults.size(); ++number) {
        if ((withLong || !faults[number].isLong) && faults[number].name.contains(only))
            numbers.push_back(number);
    }
    return numbers;
}

/// Runs the rows, several at a time, and prints them in order.
bool tryAll(const char *group, const std::vector<Fault> &faults, std::deque<std::size_t> waiting)
{
    const auto most = rowsPerCore * static_cast<std::size_t>(QThread::idealThreadCount());
    std::deque<std::unique_ptr<Row>> shown;
    bool allHold = true;
    while (!waiting.empty() || !shown.empty()) {
        const auto running = static_cast<std::size_t>(
            std::count_if(shown.begin(), shown.end(), [](auto &row) { return !row->hasEnded(); }));
        for (std::size_t free = running; free < most && !waiting.empty(); ++free) {
            shown.push_back(std::make_unique<Row>(faults[waiting.front()], waiting.front()));
            waiting.pop_front();
        }
        if (!shown.front()->hasEnded()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            continue;
        }
        allHold &= shown.front()->print(group);
        shown.pop_front();
    }
    return allHold;
}

} // namespace

int runFaults(const char *group, const std::vector<Fault> &faults, int argc, char **argv)
{
    if (argc == 3 && qstrcmp(argv[1], rowArgument) == 0)
        return tryRow(faults.at(static_cast<std::size_t>(std::atoi(argv[2]))), argc, argv);

    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption withLong(QStringLiteral("long"));
    const QCommandLineOption only(QStringLiteral("only"), {}, QStringLiteral("text"));
    parser.addOptions({withLong, only});
    parser.process(application);
    const auto numbers = chosen(faults, parser.isSet(withLong), parser.value(only).toUtf8());
    if (numbers.empty())
        return Skipped;
    return tryAll(group, faults, numbers) ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace tidewick
