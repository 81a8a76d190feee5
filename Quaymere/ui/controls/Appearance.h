// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/controls/Scheme.h"

#include <QDBusVariant>
#include <QHash>
#include <QObject>

namespace tidewick {

/// The desktop's preferences for windows: dark or light, from the settings portal or else from the
/// palette's window colour, with high contrast or not, and with or without motion. Follows the
/// portal's changes. Main thread only.
class Appearance final : public QObject
{
    Q_OBJECT

public:
    explicit Appearance(QObject *parent = nullptr);

    const Scheme &scheme() const { return m_scheme; }
    bool isDark() const { return m_scheme.dark; }

    /// Whether the portal has stated whether windows are dark or light.
    bool isStated() const { return m_stated; }

    /// Whether nothing may move by itself.
    bool isStill() const { return m_still; }

    /// Must be called when the application's palette has changed.
    void paletteChanged() { decide(); }

signals:
    void changed();

private slots:
    void takeSetting(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void ask(const QString &group, const QString &key);
    void decide();

    /// The portal's answers by key: no key that counts here exists in two groups.
    QHash<QString, QVariant> m_settings;
    Scheme m_scheme;
    bool m_stated = false;
    bool m_still = false;
};

} // namespace tidewick
