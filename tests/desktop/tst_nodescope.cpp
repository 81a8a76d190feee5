// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "desktop/NodeScope.h"
#include "support/Surroundings.h"

#include <QtTest>

using namespace tidewick;

/// Tests in which units a node is left. Moving it is tested with a real service manager.
class TestNodeScope : public QObject
{
    Q_OBJECT

private slots:
    void ownServices_data();
    void ownServices();
};

void TestNodeScope::ownServices_data()
{
    QTest::addColumn<QByteArray>("unit");
    QTest::addColumn<bool>("isOwn");
    QTest::addRow("headless") << QByteArray("tidewick.service") << true;
    QTest::addRow("by the bus") << QByteArray("app-org.tidewick.Tidewick.service") << true;
    QTest::addRow("autostarted") << QByteArray("app-org.tidewick.Tidewick@autostart.service")
                                 << true;
    QTest::addRow("Plasma's scope") << QByteArray("app-org.tidewick.Tidewick-1a2b.scope") << false;
    QTest::addRow("GNOME's scope")
        << QByteArray("app-gnome-org.tidewick.Tidewick-4711.scope") << false;
    QTest::addRow("a terminal's") << QByteArray("vte-spawn-1a2b.scope") << false;
    QTest::addRow("a session") << QByteArray("session-3.scope") << false;
    QTest::addRow("a panel's service") << QByteArray("waybar.service") << false;
    QTest::addRow("a similar name") << QByteArray("my-tidewick.service") << false;
    QTest::addRow("none") << QByteArray() << false;
}

void TestNodeScope::ownServices()
{
    QFETCH(QByteArray, unit);
    QFETCH(bool, isOwn);
    const QByteArray path = "/user.slice/user-1000.slice/user@1000.service/app.slice/" + unit;
    QCOMPARE(NodeScope::isOwnService("0::" + path + '\n'), isOwn);
    // With control groups of version 1, the manager's hierarchy is one of several.
    QCOMPARE(NodeScope::isOwnService("3:cpu:/\n1:name=systemd:" + path + "\n0::/\n"), isOwn);
}

TIDEWICK_TEST_MAIN(TestNodeScope)
#include "tst_nodescope.moc"
