// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "node/NodeController.h"
#include "ui/Alerts.h"
#include "ui/MenuRows.h"
#include "ui/Windows.h"

#include <QObject>

#include <functional>

namespace tidewick {

/// Carries out what was chosen in the menu, whichever face it was chosen in. What cannot be carried
/// out is left, with a word in the log. Main thread only.
class MenuCommands final : public QObject
{
    Q_OBJECT

public:
    /// Shows a web page, a folder or a file with the program that the desktop has for it. False
    /// when there is none.
    using OpenUrl = std::function<bool(const QUrl &)>;

    MenuCommands(NodeController &node, Windows &windows, Alerts &alerts, OpenUrl openUrl);

    void run(MenuCommand command);

signals:
    void quitRequested();

private:
    void open(const QUrl &url) const;
    void openPath(const std::filesystem::path &path) const;
    void copyServerInfo() const;

    NodeController &m_node;
    Windows &m_windows;
    Alerts &m_alerts;
    OpenUrl m_openUrl;
};

} // namespace tidewick
