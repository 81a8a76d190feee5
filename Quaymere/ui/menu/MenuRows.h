// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "node/NodeStatus.h"

#include <QList>
#include <QUrl>

namespace tidewick {

/// The command that a menu row triggers when it is chosen.
enum class MenuCommand {
    None,
    OpenLedger,
    StartNode,
    StopNode,
    ClearStorage,
    OpenDataFolder,
    OpenLog,
    CopyServerInfo,
    ShowError,
    LiveLedger,
    Settings,
    About,
    Quit,
    InstallNode,
};

/// The positions of the rows from top to bottom. A row keeps its position when others come and go.
enum class MenuPlace {
    Title,
    Detail,
    Advice,
    InstallNode,
    AfterHeader,
    Ledger,
    Peers,
    Uptime,
    Memory,
    TimeLeft,
    Store,
    Storage,
    AfterFigures,
    StartOrStop,
    ClearStorage,
    AfterNode,
    OpenDataFolder,
    OpenLog,
    CopyServerInfo,
    ShowError,
    LiveLedger,
    Settings,
    About,
    BeforeQuit,
    Quit,
};

inline constexpr int menuPlaceCount = int(MenuPlace::Quit) + 1;

/// One row of the menu. Its text is plain, complete and unescaped, whatever the node put into it.
struct MenuRow
{
    enum class Kind { Text, Separator, Command };

    MenuPlace place;
    Kind kind;
    QString text;
    bool enabled = true;
    MenuCommand command = MenuCommand::None;
    /// Whether the row shows a figure that the node no longer updates.
    bool old = false;

    bool operator==(const MenuRow &) const = default;
};

/// The rows that every face of the application shows: tray menu, node panel, terminal.
QList<MenuRow> menuRows(const NodeStatus &status);

/// The same rows, with any advice below the detail and, if there is one, the command that helps.
/// For faces that have room for a sentence.
QList<MenuRow> rowsWithAdvice(const NodeStatus &status);

/// The label of the command that shows how to install a node.
QString installNodeLabel();

/// The title and, if there are any, the detail and the advice.
QStringList summaryLines(const NodeStatus &status);

/// The same in one line.
QString summary(const NodeStatus &status);

/// The title row's text.
QString phaseTitle(Phase phase);

/// The public explorer's page for the validated ledger; nothing while no ledger is known.
std::optional<QUrl> ledgerLink(const NodeStatus &status);

} // namespace tidewick
