// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QStringList>

namespace tidewick {

/// What a desktop's file browser offers to other programs.
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
            qFatal("There is a file browser already");
    }
    ~FileManagerService() override { QDBusConnection::disconnectFromBus(connection.name()); }

    bool errs = false;
    QList<QStringList> shown;
    QDBusConnection connection;

public slots:
    // The name and types are the ones on the bus.
    void ShowItems(const QStringList &urls, const QString &)
    {
        shown.append(urls);
        if (errs)
            sendErrorReply(QDBusError::Failed, QStringLiteral("not today"));
    }
};

} // namespace tidewick
