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

/// The node as a desktop shows it: in the tray where something shows one, else in the panel, and in
/// the windows that both open. A tray host over D-Bus is taken as soon as it is there, one that
/// embeds only when none over D-Bus has come in the time of grace; with neither, the panel opens,
/// and gives its place to a tray that comes later. Owned by the application; main thread only.
class DesktopFaces final : public QObject
{
    Q_OBJECT

public:
    explicit DesktopFaces(NodeController &node);
    ~DesktopFaces() override;

    /// Comes to the front for somebody who launched the program again.
    void comeForward();

    /// The same for somebody who has just launched it, with the face that it turns out to have.
    void comeForwardOnceSettled();

    void run(MenuCommand command) { m_commands.run(command); }

    void paletteChanged() { m_appearance.paletteChanged(); }

signals:
    void quitRequested();

private:
    void followTrayHost();
    /// Takes the face that fits what is there now.
    void settle();
    bool isInTray() const;
    void makeTrayItem();
    void showPanel();
    QString adviceForOnce();

    void followStatus();
    void followAppearance();
    void updateIcon();
    QIcon icon();
    QString toolTip() const;

    NodeController &m_node;
    Appearance m_appearance;
    Windows m_windows;
    Alerts m_alerts;
    MenuCommands m_commands;
    StatusIcon m_icon;
    TrayHost m_trayHost;
    /// Runs while a tray host may still come.
    QTimer m_grace;
    bool m_isWanted = false;
    std::unique_ptr<TrayItem> m_tray;
    std::unique_ptr<NodePanel> m_panel;
};

} // namespace tidewick
