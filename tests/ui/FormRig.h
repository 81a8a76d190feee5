// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/NodeRig.h"
#include "ui/controls/Picker.h"
#include "ui/settings/SettingsWindow.h"

#include <QAbstractButton>

namespace tidewick {

/// Shows a window and waits until it has the keyboard.
void showActive(QWidget &window);

/// The texts that a window shows, from top to bottom and each line from its beginning.
QStringList shownTexts(const QWidget &window);

/// The window's button of that name; the test fails where there is none.
QAbstractButton *button(const QWidget &window, const char *name);

/// A node, and a settings window on the screen, active, with what it asks of the desktop.
class SettingsRig
{
public:
    enum Question { AfterFull, HardCap, DiskGuard, RoundGrowth };

    /// The settings begin as this; empty: none is stored.
    explicit SettingsRig(const QByteArray &settings = {});

    Picker *picker(Question question) const;
    QStringList entries(Question question) const;
    void key(Qt::Key key) const;
    /// A write by another program.
    void writeSettings(const QByteArray &settings) const;
    QByteArray storedSettings() const { return contentOf(defaults.file()); }

    NodeRig node;
    Defaults defaults;
    QList<QUrl> opened;
    bool opens = true;
    QList<std::filesystem::path> revealed;
    bool reveals = true;
    std::unique_ptr<SettingsWindow> window;
};

} // namespace tidewick
