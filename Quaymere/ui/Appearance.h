// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusVariant>
#include <QObject>

namespace tidewick {

/// Whether the desktop is dark: what its settings portal says, else how light the palette's windows
/// are. Follows the portal as it changes. Main thread only.
class Appearance final : public QObject
{
    Q_OBJECT

public:
    explicit Appearance(QObject *parent = nullptr);

    bool isDark() const { return m_dark; }

    /// To be called when the application's palette is another one.
    void paletteChanged() { decide(); }

signals:
    void changed();

private slots:
    void takeSetting(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void askPortal();
    void decide();

    /// As the portal has it: 0 no preference, 1 dark, 2 light.
    uint m_portalScheme = 0;
    bool m_dark = false;
};

} // namespace tidewick
