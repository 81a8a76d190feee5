// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Desktop.h"
#include "application/LaunchedApplication.h"
#include "application/TrayReader.h"
#include "application/XWindows.h"
#include "support/Sockets.h"
#include "support/Surroundings.h"

#include <QDBusConnectionInterface>
#include <QTcpServer>
#include <QUdpSocket>
#include <QXmlStreamReader>

#include <algorithm>
#include <array>
#include <csignal>

using namespace tidewick;

namespace {

/// Counters of attempts to reach other machines, and of name lookups.
constexpr std::array outwardCounters{"IpOutNoRoutes", "Ip6OutNoRoutes", "UdpOutDatagrams",
                                     "Udp6OutDatagrams"};

std::array<qint64, outwardCounters.size()> countOutward()
{
    std::array<qint64, outwardCounters.size()> counts{};
    std::transform(outwardCounters.begin(), outwardCounters.end(), counts.begin(), networkCounter);
    return counts;
}

} // namespace

/// Tests which ports and names the application, with all its windows open, offers to others, and
/// whom it contacts.
class TestReach : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void detectsListeners();
    void nothingListens();
    void contactsOnlyItsNode();
    void detectsOutwardAttempts();
    void namesOnTheBus();
    void methodsOnTheBus();

private:
    Sockets look() const;
    QStringList busNames() const;
    QString introspection(const QString &name, const QString &path) const;
    void gatherInterfaces(const QString &service, const QString &path, QStringList &found) const;

    TestBundle m_bundle;
    std::unique_ptr<SessionBus> m_bus;
    std::unique_ptr<XServer> m_display;
    std::unique_ptr<DesktopPanel> m_panel;
    std::unique_ptr<LaunchedApplication> m_application;
    std::array<qint64, outwardCounters.size()> m_countBefore{};
};

void TestReach::initTestCase()
{
    m_bus = std::make_unique<SessionBus>();
    m_display = std::make_unique<XServer>();
    m_panel = std::make_unique<DesktopPanel>();
    QVERIFY(DesktopPanel::waitForHost(*m_bus));
    m_countBefore = countOutward();

    m_application = std::make_unique<LaunchedApplication>(
        m_bundle, "speed=20 state=full rpc=silent rpc-after=usr1");
    TrayReader reader(m_bus->connection());
    QVERIFY(waitUntil([&] { return reader.findItem() && !reader.menu().isEmpty(); }));
    const auto open = [&](const char *command, const char *window) {
        return reader.click(QString::fromUtf8(command))
               && waitUntil([&] { return isWindowShown(QString::fromUtf8(window)); });
    };
    QVERIFY(open("Live Ledger…", "Live Ledger"));
    QVERIFY(open("Settings…", "Tidewick Settings"));
    QVERIFY(open("About", "About Tidewick"));
    QVERIFY(waitUntil([] { return LaunchedApplication::noted("RPCHandler:NFO subscribe") > 0; }));
}

void TestReach::cleanupTestCase()
{
    QVERIFY(m_application->endsWell(SIGTERM));
}

/// The sockets of the application and its children, except those of the node.
Sockets TestReach::look() const
{
    Sockets all;
    for (const pid_t process :
         familyOf(m_application->process().id(), m_application->node().value_or(0))) {
        const Sockets sockets = Sockets::of(process);
        all.open += sockets.open;
        all.peers.insert(sockets.peers.begin(), sockets.peers.end());
    }
    return all;
}

void TestReach::detectsListeners()
{
    QVERIFY(Sockets::of(::getpid()).open.isEmpty());
    QTcpServer four;
    QTcpServer six;
    QUdpSocket datagrams;
    QVERIFY(four.listen(QHostAddress::LocalHost));
    QVERIFY(datagrams.bind(QHostAddress::LocalHost));
    QByteArrayList expected{"tcp 127.0.0.1:" + QByteArray::number(four.serverPort()),
                            "udp 127.0.0.1:" + QByteArray::number(datagrams.localPort())};
    if (six.listen(QHostAddress::LocalHostIPv6)) {
        expected.insert(1, "tcp6 [" + QByteArray(24, '0')
                               + "01000000]:" + QByteArray::number(six.serverPort()));
    }
    QCOMPARE(Sockets::of(::getpid()).open, expected);
    // The same check finds the node's ports.
    const QByteArrayList node = Sockets::of(*m_application->node()).open;
    QVERIFY2(node.contains("tcp 127.0.0.1:15005") && node.contains("tcp 127.0.0.1:16006"),
             node.join(' '));
}

void TestReach::detectsOutwardAttempts()
{
    if (!isAloneOnLoopback())
        QSKIP("This network is shared with other processes");
    const auto before = countOutward();
    QTcpSocket socket;
    socket.connectToHost(QHostAddress(QStringLiteral("192.0.2.1")), 443);
    QVERIFY(waitUntil([&] { return socket.state() == QAbstractSocket::UnconnectedState; }));
    QUdpSocket datagrams;
    datagrams.writeDatagram("x", QHostAddress::LocalHost, 53);
    const auto after = countOutward();
    QVERIFY(after[0] > before[0]);
    QCOMPARE(after[2], before[2] + 1);
}

void TestReach::nothingListens()
{
    const QByteArrayList open = look().open;
    QVERIFY2(open.isEmpty(), open.join(", "));
}

void TestReach::contactsOnlyItsNode()
{
    std::set<QByteArray> peers;
    // While requests stay unanswered, their connections remain visible.
    ::kill(*m_application->node(), SIGUSR1);
    const qsizetype polls = LaunchedApplication::noted("server_info");
    const bool seen = waitUntil([&] {
        const Sockets now = look();
        peers.insert(now.peers.begin(), now.peers.end());
        return LaunchedApplication::noted("server_info") > polls + 2 && peers.size() >= 2;
    });
    QVERIFY(seen);
    QCOMPARE(peers, (std::set<QByteArray>{"127.0.0.1:15005", "127.0.0.1:16006"}));
    if (!isAloneOnLoopback())
        QSKIP("Brief attempts cannot be detected: this network is shared");
    QCOMPARE(countOutward(), m_countBefore);
}

void TestReach::namesOnTheBus()
{
    QStringList names = busNames();
    names.erase(std::remove_if(names.begin(), names.end(),
                               [](const QString &name) { return name.startsWith(u':'); }),
                names.end());
    QCOMPARE(names, QStringList{QStringLiteral("org.tidewick.Tidewick")});
}

/// All names under which the application can be called, including those of its connections.
QStringList TestReach::busNames() const
{
    const QDBusConnectionInterface *bus = m_bus->connection().interface();
    QStringList names;
    for (const QString &name : bus->registeredServiceNames().value()) {
        if (bus->servicePid(name).value() == uint(m_application->application()))
            names += name;
    }
    return names;
}

QString TestReach::introspection(const QString &name, const QString &path) const
{
    const QDBusMessage call = QDBusMessage::createMethodCall(
        name, path, QStringLiteral("org.freedesktop.DBus.Introspectable"),
        QStringLiteral("Introspect"));
    return m_bus->connection().call(call).arguments().value(0).toString();
}

/// Collects entries of the form "path interface", without the standard interfaces of every object.
void TestReach::gatherInterfaces(const QString &service, const QString &path,
                                 QStringList &found) const
{
    QXmlStreamReader reader(introspection(service, path));
    int depth = 0;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isEndElement())
            --depth;
        if (!reader.isStartElement())
            continue;
        const QString name = reader.attributes().value(QLatin1String("name")).toString();
        if (depth == 1 && reader.name() == QLatin1String("node"))
            gatherInterfaces(service, (path == QLatin1String("/") ? path : path + u'/') + name,
                             found);
        if (depth == 1 && reader.name() == QLatin1String("interface")
            && !name.startsWith(QLatin1String("org.freedesktop.DBus.")))
            found += path + u' ' + name;
        ++depth;
    }
}

void TestReach::methodsOnTheBus()
{
    QStringList found;
    for (const QString &name : busNames())
        gatherInterfaces(name, QStringLiteral("/"), found);
    found.removeDuplicates();
    found.sort();
    QCOMPARE(found, (QStringList{QStringLiteral("/MenuBar com.canonical.dbusmenu"),
                                 QStringLiteral("/StatusNotifierItem org.kde.StatusNotifierItem"),
                                 QStringLiteral("/org/tidewick/Tidewick "
                                                "org.freedesktop.Application")}));

    QStringList methods;
    QXmlStreamReader reader(introspection(QStringLiteral("org.tidewick.Tidewick"),
                                          QStringLiteral("/org/tidewick/Tidewick")));
    QString interface;
    while (!reader.atEnd()) {
        reader.readNext();
        const QString name = reader.attributes().value(QLatin1String("name")).toString();
        if (reader.isStartElement() && reader.name() == QLatin1String("interface"))
            interface = name;
        if (reader.isStartElement() && reader.name() == QLatin1String("method")
            && interface == QLatin1String("org.freedesktop.Application"))
            methods += name;
    }
    methods.sort();
    QCOMPARE(methods, (QStringList{QStringLiteral("Activate"), QStringLiteral("ActivateAction"),
                                   QStringLiteral("Open")}));
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestReach)
#include "tst_reach.moc"
