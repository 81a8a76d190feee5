// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Subject.h"

#include "application/XWindows.h"
#include "platform/NodePorts.h"
#include "support/Processes.h"
#include "support/RpcCall.h"
#include "support/Sockets.h"

#include <QElapsedTimer>
#include <QtTest>

#include <csignal>
#include <filesystem>

#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tidewick::soaking {

namespace {

/// Enough for a node to start after one was killed with its data folder in use, and for a request
/// that hangs to time out.
constexpr int ampleMs = 90'000;
/// The interval between checks, so that the checks themselves do not keep the application busy.
constexpr int lookMs = 100;

const QString ledgerTitle = QStringLiteral("Live Ledger");
const QString panelTitle = QStringLiteral("Tidewick");

void require(const std::function<bool()> &condition, const char *what)
{
    QElapsedTimer time;
    time.start();
    while (!condition()) {
        if (time.hasExpired(ampleMs))
            qFatal("%s", what);
        QTest::qWait(lookMs);
    }
}

quint16 portOf(int (*end)(int, sockaddr *, socklen_t *), int socket)
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    if (end(socket, reinterpret_cast<sockaddr *>(&address), &size) != 0
        || address.sin_family != AF_INET)
        return 0;
    return ntohs(address.sin_port);
}

} // namespace

Subject::Subject() : m_reader(std::make_unique<TrayReader>(m_bus.connection()))
{
    resetScenario();
    restartPanel();
    m_application = std::make_unique<LaunchedApplication>(
        m_bundle, '@' + QByteArray::fromStdString((m_folder.path() / "scenario").string()));
}

void Subject::setScenario(const QByteArray &scenario)
{
    writeFile(m_folder.path() / "scenario", "speed=20 peers=14 " + scenario);
}

void Subject::resetScenario()
{
    setScenario({});
}

void Subject::settle()
{
    require([this] { return m_reader->findItem() && !m_reader->menu().isEmpty(); },
            "the tray shows no item");
    require(
        [this] {
            (void)pressIfThere("Start Node");
            return isInPhase("Full");
        },
        "the node does not get into sync");
    if (!isWindowShown(ledgerTitle))
        press("Live Ledger…");
    require([this] { return isSettled(); }, "the ledger window does not follow the node");
    require([this] { return showsTheNodesFigures(); }, "the menu's figures differ from the node's");
}

bool Subject::isSettled()
{
    return isWindowShown(ledgerTitle) && !isWindowShown(panelTitle) && isInPhase("Full")
           && Sockets::of(process()).peers.contains("127.0.0.1:"
                                                    + QByteArray::number(NodePorts::webSocket));
}

bool Subject::isInPhase(const char *title)
{
    const QList<MenuEntry> menu = m_reader->menu();
    return !menu.isEmpty() && menu.constFirst().text == QString::fromUtf8(title);
}

bool Subject::pressIfThere(const char *command)
{
    const QString text = QString::fromUtf8(command);
    const QList<MenuEntry> menu = m_reader->menu();
    return std::any_of(menu.begin(), menu.end(),
                       [&](const MenuEntry &entry) { return entry.text == text && entry.enabled; })
           && m_reader->click(text);
}

void Subject::press(const char *command)
{
    require([&] { return pressIfThere(command); }, command);
}

void Subject::closeLedger()
{
    closeWindow(ledgerTitle);
    require([] { return !isWindowShown(ledgerTitle); }, "the ledger window does not close");
}

void Subject::launchAgain()
{
    LaunchedApplication second(m_bundle, "listen=no");
    if (!second.process().waitForEnd() || second.process().ending()->status != 0)
        qFatal("a second launch does not end well: %s", second.output().constData());
}

void Subject::restartPanel()
{
    m_panel.reset();
    m_panel = std::make_unique<DesktopPanel>();
    if (!DesktopPanel::waitForHost(m_bus))
        qFatal("no tray host came up");
}

void Subject::dropStream() const
{
    const auto processId = node();
    if (!processId)
        return;
    const UniqueDescriptor process(static_cast<int>(::syscall(SYS_pidfd_open, *processId, 0U)));
    for (const auto &entry :
         std::filesystem::directory_iterator("/proc/" + std::to_string(*processId) + "/fd")) {
        const UniqueDescriptor theirs(static_cast<int>(::syscall(
            SYS_pidfd_getfd, process.get(), std::stoi(entry.path().filename().string()), 0U)));
        if (theirs && portOf(&::getsockname, theirs.get()) == NodePorts::webSocket
            && portOf(&::getpeername, theirs.get()) != 0)
            ::shutdown(theirs.get(), SHUT_RDWR);
    }
}

QString Subject::rowOf(const char *name)
{
    const QString begin = QLatin1String(name) + QLatin1String(": ");
    for (const MenuEntry &entry : m_reader->menu()) {
        if (entry.text.startsWith(begin))
            return entry.text.mid(begin.size());
    }
    return {};
}

/// The node continues while it is queried and the menu is read, so the menu's ledger has to lie
/// between those of two answers.
bool Subject::showsTheNodesFigures()
{
    NodeRPC rpc(NodePorts::rpc);
    const auto ask = [&rpc] {
        const RpcCall call(rpc, QStringLiteral("server_info"));
        const bool isAnswered = waitUntil([&] { return call.finished(); }) && call.result();
        const QJsonValue info = isAnswered ? (*call.result())[u"info"] : QJsonValue();
        return std::pair(info[u"validated_ledger"][u"seq"].toInteger(), info[u"peers"].toInteger());
    };
    const auto before = ask();
    qint64 shown = 0;
    if (!waitUntil([&] {
            // As in "#99143086 (2s ago)".
            shown = rowOf("Validated ledger").section(u'#', 1).section(u' ', 0, 0).toLongLong();
            return shown >= before.first;
        }))
        return false;
    const qint64 peers = rowOf("Peers").toLongLong();
    const auto after = ask();
    return before.first > 0 && shown <= after.first && peers > 0 && peers == after.second;
}

bool Subject::quits()
{
    const auto left = node();
    press("Quit");
    return m_application->process().waitForEnd() && !m_application->process().ending()->signaled
           && m_application->process().ending()->status == 0 && left && !runs(*left);
}

} // namespace tidewick::soaking
