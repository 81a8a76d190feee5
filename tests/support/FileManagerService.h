// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QStringList>

namespace tidewick {

/// A stand-in for the desktop's file browser, as other programs see it on the bus.
class FileManagerService : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    explicit FileManagerService(const QDBusConnection &bus) : connection(bus)
    {
        connection.registerObject(QStringLiteral("/org/freedesktop/FileManager1"), this,
                                  QDBusConnection::ExportAllSlots);
        if (!connection.registerService(QStringLiteral("org.freedesktop.FileManager1")))
            qFatal("A file browser is already on the bus");
    }
    ~FileManagerService() override { QDBusConnection::disconnectFromBus(connection.name()); }

    bool errs = false;
    QList<QStringList> shown;
    QDBusConnection connection;

public slots:
    // The name and the types are those of the D-Bus interface.
    void ShowItems(const QStringList &urls, const QString &)
    {
        shown.append(urls);
        if (errs)
            sendErrorReply(QDBusError::Failed, QStringLiteral("not today"));
    }
};

} // namespace tidewick
