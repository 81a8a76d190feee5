// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "PrivateBus.h"
#include "desktop/BusProbe.h"
#include "platform/files/Files.h"
#include "support/Surroundings.h"

#include <sys/socket.h>
#include <sys/un.h>

using namespace tidewick;
using namespace std::chrono_literals;

/// Tests buses that answer and buses that do not.
class TestBusProbe : public QObject
{
    Q_OBJECT

private slots:
    void realBus();
    void silentBus();
    void noBus_data();
    void noBus();
    void avoidsASilentBus();

private:
    TemporaryFolder m_folder;
};

namespace {

/// Listens for connections but never accepts them, until the backlog is full.
UniqueDescriptor listenAt(const QByteArray &path)
{
    UniqueDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, path.constData(), sizeof address.sun_path);
    if (::bind(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0
        || ::listen(socket.get(), 1) != 0)
        qFatal("Cannot create a socket at %s", path.constData());
    return socket;
}

} // namespace

void TestBusProbe::realBus()
{
    const PrivateBus bus;
    QVERIFY(BusProbe::answers(bus.address(), 30s));
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address());
    BusProbe::avoidIfSilent();
    QCOMPARE(qgetenv("DBUS_SESSION_BUS_ADDRESS"), bus.address());
}

void TestBusProbe::silentBus()
{
    const QByteArray path = QByteArray::fromStdString(m_folder.path() / "a bus");
    const UniqueDescriptor listening = listenAt(path);
    const QByteArray address = "unix:guid=1,path=" + path.toPercentEncoding("/") + ";unix:path=/x";
    for (int connection = 0; connection < 5; ++connection)
        QVERIFY(!BusProbe::answers(address, 50ms));
}

void TestBusProbe::noBus_data()
{
    QTest::addColumn<QByteArray>("address");
    for (const char *address : {"", "unix:path=/no/such/bus", "unix:abstract=no-such-bus",
                                "unix:tmpdir=/tmp", "tcp:host=127.0.0.1,port=9", "disabled:"})
        QTest::newRow(address) << QByteArray(address);
    QTest::newRow("too long") << "unix:path=/" + QByteArray(200, 'x');
}

/// Addresses that the bus library gives up on at once.
void TestBusProbe::noBus()
{
    QFETCH(QByteArray, address);
    QVERIFY(BusProbe::answers(address, 50ms));
}

void TestBusProbe::avoidsASilentBus()
{
    const QByteArray runtime = QByteArray::fromStdString(m_folder.path());
    const UniqueDescriptor listening = listenAt(runtime + "/bus");
    qputenv("XDG_RUNTIME_DIR", runtime);
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    BusProbe::avoidIfSilent();
    QCOMPARE(qgetenv("DBUS_SESSION_BUS_ADDRESS"), "disabled:");
}

TIDEWICK_TEST_MAIN(TestBusProbe)
#include "tst_busprobe.moc"
