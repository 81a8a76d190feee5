// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "PrivateBus.h"
#include "desktop/SystemService.h"
#include "support/Surroundings.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>

#include <memory>

using namespace tidewick;

namespace {

/// A service manager with a single unit.
class Manager : public QDBusVirtualObject
{
    Q_OBJECT

public:
    explicit Manager(QDBusConnection bus)
    {
        bus.registerVirtualObject(QStringLiteral("/org/freedesktop/systemd1/unit"), this,
                                  QDBusConnection::SubPath);
        if (!bus.registerService(QStringLiteral("org.freedesktop.systemd1")))
            qFatal("A service manager is already on the bus");
    }

    QString introspect(const QString &) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override
    {
        asked.append(message.path().section(u'/', -1) + u' ' + message.member() + u' '
                     + message.arguments().value(1).toString());
        bus.send(message.createReply(QVariant::fromValue(QDBusVariant(state))));
        return true;
    }

    QString state = QStringLiteral("inactive");
    QStringList asked;
};

} // namespace

class TestSystemService : public QObject
{
    Q_OBJECT

private slots:
    void followsTheManager();
};

/// Qt has a single connection to the system bus per process, so this is a single test.
void TestSystemService::followsTheManager()
{
    PrivateBus bus;
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address());
    SystemService service(QStringLiteral("my-node.service"));
    QVERIFY(!service.isActive());
    // Without a manager there is no service.
    service.look();
    QTRY_VERIFY(service.children().isEmpty());
    QVERIFY(!service.isActive());

    Manager manager(bus.connect());
    manager.state = QStringLiteral("active");
    service.look();
    service.look(); // while the first call is pending
    QTRY_VERIFY(service.isActive());
    QCOMPARE(manager.asked, QStringList{QStringLiteral("my_2dnode_2eservice Get ActiveState")});
    manager.state = QStringLiteral("deactivating");
    service.look();
    QTRY_VERIFY(!service.isActive());

    manager.state = QStringLiteral("active");
    service.look();
    QTRY_VERIFY(service.isActive());
    bus.stop();
    service.look();
    QTRY_VERIFY(service.children().isEmpty());
}

TIDEWICK_TEST_MAIN(TestSystemService)
#include "tst_systemservice.moc"
