// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>

namespace tidewick {

/// Tells programs which bus screen readers use.
class AccessibilityBus final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.a11y.Bus")

public:
    AccessibilityBus(QObject *parent, const QString &address)
        : QDBusAbstractAdaptor(parent), m_address(address)
    {
    }

public slots:
    // The name is that of the D-Bus interface.
    QString GetAddress() const { return m_address; }

private:
    QString m_address;
};

/// Tells programs that there is a screen reader.
class AccessibilityStatus final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.a11y.Status")
    Q_PROPERTY(bool IsEnabled READ isEnabled CONSTANT)
    Q_PROPERTY(bool ScreenReaderEnabled READ isEnabled CONSTANT)

public:
    explicit AccessibilityStatus(QObject *parent) : QDBusAbstractAdaptor(parent) {}

    bool isEnabled() const { return true; }
};

/// Has the programs on a session bus report what happens in their windows, as a desktop does while
/// a screen reader runs. They report it on the same bus, where nobody needs to listen.
class ScreenReaderService final : public QObject
{
    Q_OBJECT

public:
    ScreenReaderService(QDBusConnection bus, const QString &address)
    {
        new AccessibilityBus(this, address);
        new AccessibilityStatus(this);
        if (!bus.registerObject(QStringLiteral("/org/a11y/bus"), this)
            || !bus.registerService(QStringLiteral("org.a11y.Bus")))
            qFatal("The screen reader's name is taken");
    }
};

} // namespace tidewick
