// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "faults/FaultRun.h"
#include "faults/FaultTable.h"
#include "platform/NodePorts.h"

#include <QTcpServer>
#include <QtTest>

#include <csignal>

using namespace tidewick;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

/// A problem that the node reports, and part of the advice that results from it.
struct Trouble
{
    QByteArray what;
    QByteArray scenario;
    QByteArray advice;
    /// It becomes a problem only after minutes of real time.
    bool isLong = false;
};

const std::vector<Trouble> troubles{
    {"has no list of validators", "lists=none",
     "No valid list of validators. unl.xrplf.org cannot"},
    {"has lists that have expired", "lists=expired", "No valid list of validators since "},
    {"has lists that expire soon", "state=full lists=expiring", "list of validators expires on "},
    {"does not know the next rules", "state=full warnings=amendment-majority",
     "The network changes its rules on "},
    {"does not know the rules", "state=connected amendment-blocked=yes", " is too old: "},
    {"gives a warning of its own", "state=full warnings=other",
     "The node warns: This server is <b>unusual</b>."},
    {"finds the clock wrong", "state=connected clock-offset=-90",
     "This computer's clock is wrong by 1 minute."},
    {"does not catch up for an hour", "state=tracking peers=3 speed=1000",
     "catch up with the network for 1 hour"},
    {"has no peers for five minutes, real time", "state=disconnected peers=0",
     "has reached no other node for 5 minutes", true},
};

/// Waits until the last line of output contains this text, or no longer contains it.
bool tells(WatchedApplication &application, const QByteArray &text, bool wanted = true,
           std::chrono::milliseconds limit = 1min)
{
    return QTest::qWaitFor(
        [&] {
            const QByteArray told = application.output();
            const qsizetype begin = told.lastIndexOf('\n', -2) + 1;
            return told.endsWith('\n') && told.mid(begin).contains(text) == wanted;
        },
        int(limit.count()));
}

void comesAndGoes(FaultRun &run, const Trouble &trouble)
{
    WatchedApplication &application = run.launch("heal=usr1 " + trouble.scenario);
    if (!run.expect(tells(application, trouble.advice, true, trouble.isLong ? 6min : 1min),
                    trouble.advice))
        return;
    const QByteArray told = application.output();
    run.saw(told.mid(told.indexOf(trouble.advice)).split('\n').first());
    ::kill(application.node().value(), SIGUSR1);
    run.expect(application.reaches(Phase::Full), "Full");
    run.expect(tells(application, trouble.advice, false), "the advice is withdrawn");
    run.expect(application.endsWell(), "it quits");
}

void isSilent(FaultRun &run)
{
    WatchedApplication &application = run.launchInFull();
    const pid_t node = application.node().value();
    ::kill(node, SIGSTOP);
    run.expect(tells(application, "has not answered for 30 seconds"),
               "advice about missing answers");
    run.saw(application.lastLine());
    ::kill(node, SIGCONT);
    run.expect(tells(application, "not answered", false), "the advice is withdrawn");
    run.expect(application.endsWell(), "it quits");
}

void hasCompany(FaultRun &run)
{
    QTcpServer other;
    run.expect(other.listen(QHostAddress::LocalHost, NodePorts::peers), "a port");
    WatchedApplication &application = run.launchInFull();
    run.expect(tells(application, "Another node runs on this computer"),
               "advice about another node");
    other.close();
    run.expect(tells(application, "Another node", false), "the advice is withdrawn");
    run.saw("shown, and withdrawn when the other was gone");
    run.expect(application.endsWell(), "it quits");
}

void endsWithAdvice(FaultRun &run, const QByteArray &scenario, const QByteArray &advice)
{
    WatchedApplication &application = run.launch(scenario);
    run.expect(application.reaches(Phase::Error), "Error");
    run.expect(application.lastLine().contains(advice), advice);
    run.saw(application.lastLine());
}

void isMissing(FaultRun &run)
{
    const fs::path node = run.bundle().node();
    fs::rename(node, fs::path(node) += ".away");
    endsWithAdvice(run, "", "Install the package");
    fs::rename(fs::path(node) += ".away", node);
}

std::vector<Fault> adviceFaults()
{
    std::vector<Fault> faults;
    faults.reserve(troubles.size() + 5);
    for (const Trouble &trouble : troubles) {
        faults.push_back({"the node " + trouble.what, "advice until the problem is gone",
                          [=](FaultRun &run) { comesAndGoes(run, trouble); }, trouble.isLong});
    }
    faults.push_back({"the node is suspended for 30 s", "advice until it answers again", isSilent});
    faults.push_back({"another node comes and goes", "advice while it runs", hasCompany});
    faults.push_back({"the node's store is damaged", "Error, with the remedy", [](FaultRun &run) {
                          endsWithAdvice(run, "store=damaged", "The node's store is damaged.");
                      }});
    faults.push_back({"the node has another store", "Error, with the remedy", [](FaultRun &run) {
                          endsWithAdvice(run, "store=stock", "TIDEWICK_STORE=NuDB");
                      }});
    faults.push_back({"there is no node", "Error, with what to install", isMissing});
    return faults;
}

} // namespace

int main(int argc, char *argv[])
{
    return runFaults("advice", adviceFaults(), argc, argv);
}
