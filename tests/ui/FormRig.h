// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/NodeRig.h"
#include "ui/controls/Picker.h"
#include "ui/settings/SettingsWindow.h"

#include <QAbstractButton>

namespace tidewick {

/// Shows a window and waits until it is active.
void showActive(QWidget &window);

/// The texts that a window shows, from top to bottom and, within a line, from left to right.
QStringList shownTexts(const QWidget &window);

/// The window's button with that text. Aborts the test if there is none.
QAbstractButton *button(const QWidget &window, const char *name);

/// A node with an active settings window on the screen, and what the window asks of the desktop.
class SettingsRig
{
public:
    enum Question { AfterFull, HardCap, DiskGuard, RoundGrowth };

    /// `settings` is the initial content of the settings file; if empty, nothing is stored.
    explicit SettingsRig(const QByteArray &settings = {});

    Picker *picker(Question question) const;
    QStringList entries(Question question) const;
    void key(Qt::Key key) const;
    /// Writes the settings file as another program would.
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
