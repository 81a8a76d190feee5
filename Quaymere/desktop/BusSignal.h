// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusConnection>
#include <QString>

namespace tidewick {

/// A signal on a message bus. An empty service or interface stands for any.
struct BusSignal
{
    QString service;
    QString path;
    QString interface;
    QString name;

    /// Calls the receiver's slot, as SLOT() gives it, for each of these signals. QtDBus ignores
    /// slots with parameters of types that it does not know yet; its own type for variants is made
    /// known here. Logs a warning if QtDBus refuses the slot on a connected bus.
    void connect(QDBusConnection bus, QObject *receiver, const char *slot) const;
};

} // namespace tidewick
