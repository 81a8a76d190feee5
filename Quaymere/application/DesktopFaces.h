// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/Windows.h"
#include "ui/controls/Appearance.h"
#include "ui/dialogs/Alerts.h"
#include "ui/icon/StatusIcon.h"
#include "ui/menu/MenuCommands.h"
#include "ui/panel/NodePanel.h"
#include "ui/tray/TrayHost.h"
#include "ui/tray/TrayItem.h"

#include <QObject>
#include <QTimer>

#include <memory>

namespace tidewick {

/// The faces of the node on a desktop: the tray item if something hosts one, otherwise the panel,
/// and the windows that both open. A D-Bus tray host is used as soon as it appears. An XEmbed tray
/// is used only if no D-Bus host has appeared within the grace period. With neither, the panel
/// opens, and it hides again when a tray appears later. Owned by the application; main thread only.
class DesktopFaces final : public QObject
{
    Q_OBJECT

public:
    explicit DesktopFaces(NodeController &node);
    ~DesktopFaces() override;

    /// Brings a window to the front when the user launches the program again: the live ledger if
    /// the application is in a tray or will be, otherwise the panel.
    void comeForward();

    /// Does the same for the launch that started this process, as soon as that is decided.
    void comeForwardOnceSettled();

    void run(MenuCommand command) { m_commands.run(command); }

    void paletteChanged() { m_appearance.paletteChanged(); }

signals:
    void quitRequested();

private:
    void followTrayHost();
    /// Shows the face that suits the tray hosts available now.
    void settle();
    bool isInTray() const;
    bool willBeInTray() const;
    void makeTrayItem();
    void showPanel();
    /// Shows the panel beside the tray item, or hides it if the user is just using it.
    void togglePanel();
    QString adviceForOnce();

    void followStatus();
    void followAppearance();
    void updateIcon();
    QIcon icon();
    QStringList toolTip() const;

    NodeController &m_node;
    Appearance m_appearance;
    Windows m_windows;
    Alerts m_alerts;
    MenuCommands m_commands;
    StatusIcon m_icon;
    TrayHost m_trayHost;
    /// Runs while a tray host may still appear.
    QTimer m_grace;
    bool m_isWanted = false;
    std::unique_ptr<TrayItem> m_tray;
    std::unique_ptr<NodePanel> m_panel;
};

} // namespace tidewick
