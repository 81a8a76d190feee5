// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "node/NodeController.h"
#include "ui/menu/MenuRows.h"

#include <QObject>

#include <functional>

namespace tidewick {

/// The services that the commands need from the application.
struct MenuHost
{
    /// Opens a web page, folder or file with the desktop's program for it. Returns false if there
    /// is none.
    std::function<bool(const QUrl &)> openUrl;
    /// Opens a window by its identifier, or brings it forward.
    std::function<void(const QString &)> openWindow;
    /// Shows an error and, unless it is empty, advice on it.
    std::function<void(const QString &text, const QString &advice)> showError;
    /// Brings forward a question that was asked earlier and may be hidden by now.
    std::function<void()> bringQuestionForward;
    std::function<void(const QString &text)> copy;
};

/// Carries out the menu's commands for every face. Logs a warning if nothing on the desktop opens
/// an item. Main thread only.
class MenuCommands final : public QObject
{
    Q_OBJECT

public:
    MenuCommands(NodeController &node, MenuHost host);

    void run(MenuCommand command);

signals:
    void quitRequested();

private:
    void open(const QUrl &url) const;
    void openPath(const std::filesystem::path &path) const;
    void showError() const;
    void copyServerInfo() const;

    NodeController &m_node;
    MenuHost m_host;
};

} // namespace tidewick
