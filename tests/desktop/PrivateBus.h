// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/TestFiles.h"

#include <QDBusConnection>
#include <QProcess>

namespace tidewick {

/// A private message bus for the test: only the test connects to it, and calls cannot activate
/// services.
class PrivateBus
{
public:
    PrivateBus();
    ~PrivateBus() { stop(); }

    QByteArray address() const { return m_address.toUtf8(); }

    /// Opens a new connection, which the bus treats as another program.
    QDBusConnection connect();

    /// Stops the bus and waits for its end. Its clients get no notice.
    void stop();

private:
    TemporaryFolder m_folder;
    QProcess m_daemon;
    QString m_address;
    QStringList m_connections;
};

} // namespace tidewick
