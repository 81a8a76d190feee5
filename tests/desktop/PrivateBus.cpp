// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "PrivateBus.h"

#include "platform/files/Files.h"

#include <QtTest>

namespace tidewick {

PrivateBus::PrivateBus()
{
    const std::filesystem::path configuration = m_folder.path() / "bus.conf";
    writeFile(configuration, "<busconfig><type>session</type><listen>unix:path="
                                 + QByteArray::fromStdString((m_folder.path() / "bus").string())
                                 + "</listen><policy context=\"default\">"
                                   "<allow send_destination=\"*\"/><allow eavesdrop=\"true\"/>"
                                   "<allow own=\"*\"/></policy></busconfig>");
    m_daemon.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--config-file=") + Files::display(configuration),
                    QStringLiteral("--print-address"), QStringLiteral("--nofork")});
    if (!QTest::qWaitFor([this] { return m_daemon.canReadLine(); }))
        qFatal("Cannot start a message bus: %s", m_daemon.readAllStandardError().constData());
    m_address = QString::fromLatin1(m_daemon.readLine().trimmed());
}

QDBusConnection PrivateBus::connect()
{
    // Connection names are shared by the whole process.
    static int count = 0;
    m_connections.append(QStringLiteral("private-%1").arg(++count));
    QDBusConnection connection =
        QDBusConnection::connectToBus(m_address, m_connections.constLast());
    if (!connection.isConnected())
        qFatal("The message bus does not answer");
    return connection;
}

void PrivateBus::stop()
{
    m_daemon.kill();
    if (!QTest::qWaitFor([this] { return m_daemon.state() == QProcess::NotRunning; }))
        qFatal("The message bus does not exit");
    for (const QString &name : std::exchange(m_connections, {}))
        QDBusConnection::disconnectFromBus(name);
}

} // namespace tidewick
