// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "SimulatedNode.h"

#include "RawClient.h"
#include "platform/json/JsonRead.h"

#include <QtTest>

#include <csignal>

#include <sys/prctl.h>

namespace tidewick {

namespace fs = std::filesystem;

namespace {

/// Below the range that the kernel uses for client ports. No other process uses the loopback
/// network of these tests.
constexpr quint16 firstPort = 20'001;

template <typename Condition>
bool waitFor(Condition &&condition, std::chrono::milliseconds limit = SimulatedNode::patience)
{
    return QTest::qWaitFor(condition, static_cast<int>(limit.count()));
}

} // namespace

SimulatedNode::SimulatedNode(quint16 number)
    : m_rpcPort(static_cast<quint16>(firstPort + 2 * number)),
      m_streamPort(static_cast<quint16>(m_rpcPort + 1))
{
    configuration = "[server]\nport_rpc\nport_ws\n"
                    "[port_rpc]\nip = 127.0.0.1\nport = @RPC@\nprotocol = http\n"
                    "[port_ws]\nip = 127.0.0.1\nport = @WS@\nprotocol = ws\n"
                    "[node_db]\ntype = Mossgrid\npath = @DATA@/db\nround_growth_mib = 1024\n"
                    "[database_path]\n@DATA@/db\n"
                    "[debug_logfile]\n@DATA@/debug.log\n"
                    "[validators_file]\n@DATA@/validators.txt\n";
    configuration.replace("@RPC@", QByteArray::number(m_rpcPort));
    configuration.replace("@WS@", QByteArray::number(m_streamPort));
    configuration.replace("@DATA@", QByteArray::fromStdString(folder()));
    writeFile(folder() / "validators.txt", "[validators]\n");
}

SimulatedNode::~SimulatedNode()
{
    m_process.kill();
    m_process.waitForFinished();
}

void SimulatedNode::start(const QByteArray &scenario)
{
    writeFile(folder() / "xrpld.cfg", configuration);
    startWith({QStringLiteral("--conf"), QString::fromStdString((folder() / "xrpld.cfg").string())},
              scenario);
}

void SimulatedNode::startWith(const QStringList &arguments, const QByteArray &scenario)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TIDEWICK_SIMNODE"), QString::fromUtf8(scenario));
    m_process.setProcessEnvironment(environment);
    // A test that aborts runs no destructors.
    m_process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    m_process.start(QStringLiteral(TIDEWICK_SIMNODE_PATH), arguments);
    if (!m_process.waitForStarted())
        qFatal("Cannot run the simulated node");
}

bool SimulatedNode::waitUntilOpen()
{
    return waitFor([this] {
        return RawClient(m_rpcPort).state() == RawClient::State::Open
               && RawClient(m_streamPort).state() == RawClient::State::Open;
    });
}

bool SimulatedNode::waitUntilRefused()
{
    return waitFor([this] { return RawClient(m_rpcPort).state() == RawClient::State::Refused; });
}

bool SimulatedNode::waitForLog(const QByteArray &text, std::chrono::milliseconds limit)
{
    return waitFor([this, &text] { return debugLog().contains(text); }, limit);
}

void SimulatedNode::signal(int number) const
{
    ::kill(id(), number);
}

SimulatedNode::Ending SimulatedNode::waitForEnd()
{
    if (isRunning() && !m_process.waitForFinished())
        qFatal("The simulated node does not exit");
    return {m_process.exitCode(), m_process.exitStatus() == QProcess::CrashExit};
}

QJsonObject SimulatedNode::ask(const QByteArray &method) const
{
    RawClient client(m_rpcPort);
    client.call(method);
    const auto answer = JsonRead::parseObject(client.readAnswer().body);
    return answer ? answer->value(u"result").toObject() : QJsonObject();
}

QByteArray SimulatedNode::debugLog() const
{
    const fs::path file = folder() / "debug.log";
    return fs::exists(file) ? contentOf(file) : QByteArray();
}

char *toString(const SimulatedNode::Ending &ending)
{
    return QTest::toString(QStringLiteral("%1 %2")
                               .arg(QLatin1String(ending.signaled ? "signal" : "status"))
                               .arg(ending.number));
}

} // namespace tidewick
