// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "faults/host/HostFaults.h"
#include "faults/host/HostTrial.h"
#include "platform/NodePorts.h"

#include <QTcpServer>

namespace tidewick {

namespace {

/// Another program that listens on one of the node's ports.
class TakenPort
{
public:
    TakenPort(FaultRun &run, quint16 port)
    {
        run.expect(m_server.listen(QHostAddress::LocalHost, port), "the port to be free");
    }

private:
    QTcpServer m_server;
};

void takeBeforeTheStart(FaultRun &run, quint16 port)
{
    const TakenPort taken(run, port);
    expectRefused(run, "Port 15005 or 16006 is in use. Another node may be running.");
    run.expect(runMode(run, {"--render-config", "-"}).status == 0, "--render-config gives 0");
}

/// The node opens its ports five seconds after its start, and then finds this one taken.
const QByteArray slowNode = "state=full start-delay=5";
const QByteArray refusal = "The node exited unexpectedly (exit status 255)";

void takeUnderTheApplication(FaultRun &run, quint16 port)
{
    WatchedApplication &application = run.launch(slowNode);
    run.expect(waitUntil([&] { return application.node().has_value(); }), "a node");
    const TakenPort taken(run, port);
    expectError(run, application, refusal);
}

void takeUnderSmoke(FaultRun &run, quint16 port)
{
    ChildSpec spec;
    spec.executable = run.bundle().application();
    spec.arguments = {"--smoke"};
    spec.environment["TIDEWICK_SIMNODE"] = slowNode.toStdString();
    Beside smoke(std::move(spec));
    const std::filesystem::path log = dataHome() / "Tidewick-smoke/debug.log";
    run.expect(waitUntil([&] { return std::filesystem::exists(log); }), "a node");
    const TakenPort taken(run, port);
    run.expect(smoke.waitForEnd() && !smoke.ending()->signaled && smoke.ending()->status == 1,
               "smoke to end with 1");
    run.expect(smoke.output().contains(refusal) && smoke.output().contains("cannot open"),
               "smoke to show the node's output, unlike: " + smoke.output());
    run.saw("--smoke: 1, with the node's own words");
}

} // namespace

std::vector<Fault> portFaults()
{
    std::vector<Fault> faults;
    for (const quint16 port : {NodePorts::rpc, NodePorts::webSocket}) {
        const QByteArray name = "port " + QByteArray::number(port) + " taken ";
        faults.push_back({name + "before the start", "refused, naming the ports; --smoke gives 1",
                          [=](FaultRun &run) { takeBeforeTheStart(run, port); }});
        faults.push_back({name + "between probe and start",
                          "Error with status 255; --smoke gives 1 and the node's words",
                          [=](FaultRun &run) {
                              takeUnderTheApplication(run, port);
                              takeUnderSmoke(run, port);
                          }});
    }
    return faults;
}

} // namespace tidewick
