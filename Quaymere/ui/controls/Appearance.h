// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusVariant>
#include <QHash>
#include <QObject>

namespace tidewick {

/// How the desktop wants windows to look: dark or light, as its settings portal says or else as the
/// palette's windows are, and with or without motion. Follows the portal as it changes. Main thread
/// only.
class Appearance final : public QObject
{
    Q_OBJECT

public:
    explicit Appearance(QObject *parent = nullptr);

    bool isDark() const { return m_dark; }

    /// Nothing is to move by itself.
    bool isStill() const { return m_still; }

    /// To be called when the application's palette is another one.
    void paletteChanged() { decide(); }

signals:
    void changed();

private slots:
    void takeSetting(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void ask(const QString &group, const QString &key);
    void decide();

    /// What the portal has said, by key: no key that counts here is in two groups.
    QHash<QString, QVariant> m_settings;
    bool m_dark = false;
    bool m_still = false;
};

} // namespace tidewick
