// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "desktop/BusSignal.h"

#include <QDBusVariant>
#include <QLoggingCategory>

namespace tidewick {

namespace {

Q_LOGGING_CATEGORY(lcBus, "tidewick.bus", QtWarningMsg)

} // namespace

void BusSignal::connect(QDBusConnection bus, QObject *receiver, const char *slot) const
{
    qRegisterMetaType<QDBusVariant>();
    if (!bus.connect(service, path, interface, name, receiver, slot) && bus.isConnected())
        qCWarning(lcBus, "cannot follow %s.%s", qUtf8Printable(interface), qUtf8Printable(name));
}

} // namespace tidewick
