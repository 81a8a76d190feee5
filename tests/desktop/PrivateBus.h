// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/TestFiles.h"

#include <QDBusConnection>
#include <QProcess>

namespace tidewick {

/// A message bus of the test's own: nobody is on it but the test, and nothing can be started by a
/// call.
class PrivateBus
{
public:
    PrivateBus();
    ~PrivateBus() { stop(); }

    QByteArray address() const { return m_address.toUtf8(); }

    /// Another program on the bus, as far as the bus knows.
    QDBusConnection connect();

    /// Once the bus has ended, which it does without a word to those on it.
    void stop();

private:
    TemporaryFolder m_folder;
    QProcess m_daemon;
    QString m_address;
    QStringList m_connections;
};

} // namespace tidewick
