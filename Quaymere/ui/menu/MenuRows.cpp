// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/menu/MenuRows.h"

#include "ui/menu/Explorers.h"

#include <algorithm>

namespace tidewick {

namespace {

/// Collects rows in the order in which they are added.
class RowList
{
public:
    void text(MenuPlace place, const QString &text)
    {
        m_rows.append({place, MenuRow::Kind::Text, text});
    }

    void separator(MenuPlace place) { m_rows.append({place, MenuRow::Kind::Separator, {}}); }

    void command(MenuPlace place, const QString &text, MenuCommand command, bool enabled = true)
    {
        m_rows.append({place, MenuRow::Kind::Command, text, enabled, command});
    }

    /// Marks the rows at these places as old.
    void age(std::initializer_list<MenuPlace> places)
    {
        for (MenuRow &row : m_rows)
            row.old = std::find(places.begin(), places.end(), row.place) != places.end();
    }

    QList<MenuRow> take() { return std::move(m_rows); }

private:
    QList<MenuRow> m_rows;
};

void addHeader(RowList &rows, const NodeStatus &status)
{
    rows.text(MenuPlace::Title, phaseTitle(status.phase));
    if (!status.detail.isEmpty())
        rows.text(MenuPlace::Detail, status.detail);
}

void addAdvice(RowList &rows, const NodeStatus &status)
{
    if (!status.advice)
        return;
    rows.text(MenuPlace::Advice, status.advice->text);
    if (status.advice->cause == Advice::Cause::NodeMissing)
        rows.command(MenuPlace::InstallNode, installNodeLabel(), MenuCommand::InstallNode);
}

/// Whether the node's figures are from before it stopped answering, or was told to stop.
bool hasOldFigures(const NodeStatus &status)
{
    if (!status.hasProcess || !status.hasServerInfo)
        return false;
    return status.phase == Phase::Stopping
           || (status.advice && status.advice->cause == Advice::Cause::NoAnswer);
}

void addFigures(RowList &rows, const NodeStatus &status)
{
    rows.separator(MenuPlace::AfterHeader);
    const QString ledger = QLatin1String("Validated ledger: ") + status.ledger;
    if (ledgerLink(status))
        rows.command(MenuPlace::Ledger, ledger, MenuCommand::OpenLedger);
    else
        rows.text(MenuPlace::Ledger, ledger);
    rows.text(MenuPlace::Peers,
              QLatin1String("Peers: ")
                  + (status.peers ? QString::number(*status.peers) : NodeStatus::unknown()));
    rows.text(MenuPlace::Uptime, QLatin1String("Uptime: ") + status.uptime);
    rows.text(MenuPlace::Memory, QLatin1String("Memory: ") + status.memory);
    if (status.timeLeft)
        rows.text(MenuPlace::TimeLeft, QLatin1String("Auto-stop in ") + *status.timeLeft);
    rows.text(MenuPlace::Store, QLatin1String("Store: ") + status.storeSize + QStringLiteral(" · ")
                                    + status.freeSpace);
    if (status.storage)
        rows.text(MenuPlace::Storage, *status.storage);
    // The others are not the node's own.
    if (hasOldFigures(status))
        rows.age({MenuPlace::Ledger, MenuPlace::Peers, MenuPlace::Uptime, MenuPlace::Memory,
                  MenuPlace::Storage});
    rows.separator(MenuPlace::AfterFigures);
}

void addNodeCommands(RowList &rows, const NodeStatus &status)
{
    if (status.hasProcess) {
        rows.command(MenuPlace::StartOrStop, QStringLiteral("Stop Node"), MenuCommand::StopNode,
                     status.phase != Phase::Stopping);
    } else {
        rows.command(MenuPlace::StartOrStop, QStringLiteral("Start Node"), MenuCommand::StartNode);
    }
    rows.command(MenuPlace::ClearStorage, QStringLiteral("Clear Storage…"),
                 MenuCommand::ClearStorage);
    rows.separator(MenuPlace::AfterNode);
}

void addOtherCommands(RowList &rows, const NodeStatus &status)
{
    rows.command(MenuPlace::OpenDataFolder, QStringLiteral("Open Data Folder"),
                 MenuCommand::OpenDataFolder);
    rows.command(MenuPlace::OpenLog, QStringLiteral("Open Log"), MenuCommand::OpenLog);
    rows.command(MenuPlace::CopyServerInfo, QStringLiteral("Copy server_info JSON"),
                 MenuCommand::CopyServerInfo, status.hasServerInfo);
    if (status.errorText)
        rows.command(MenuPlace::ShowError, QStringLiteral("Show Error…"), MenuCommand::ShowError);
    rows.command(MenuPlace::LiveLedger, QStringLiteral("Live Ledger…"), MenuCommand::LiveLedger);
    rows.command(MenuPlace::Settings, QStringLiteral("Settings…"), MenuCommand::Settings);
    rows.command(MenuPlace::About, QStringLiteral("About"), MenuCommand::About);
    rows.separator(MenuPlace::BeforeQuit);
    rows.command(MenuPlace::Quit, QStringLiteral("Quit"), MenuCommand::Quit);
}

/// Everything below the header.
void addBody(RowList &rows, const NodeStatus &status)
{
    addFigures(rows, status);
    addNodeCommands(rows, status);
    addOtherCommands(rows, status);
}

} // namespace

QList<MenuRow> menuRows(const NodeStatus &status)
{
    RowList rows;
    addHeader(rows, status);
    addBody(rows, status);
    return rows.take();
}

QList<MenuRow> rowsWithAdvice(const NodeStatus &status)
{
    RowList rows;
    addHeader(rows, status);
    addAdvice(rows, status);
    addBody(rows, status);
    return rows.take();
}

QString installNodeLabel()
{
    return QStringLiteral("How to Install…");
}

QStringList summaryLines(const NodeStatus &status)
{
    QStringList parts{phaseTitle(status.phase)};
    if (!status.detail.isEmpty())
        parts += status.detail;
    if (status.advice)
        parts += status.advice->text;
    return parts;
}

QString summary(const NodeStatus &status)
{
    return summaryLines(status).join(QStringLiteral(" · "));
}

QString phaseTitle(Phase phase)
{
    switch (phase) {
    case Phase::Stopped:
        return QStringLiteral("Stopped");
    case Phase::Starting:
        return QStringLiteral("Starting…");
    case Phase::Bootstrapping:
        return QStringLiteral("Bootstrapping…");
    case Phase::Connecting:
        return QStringLiteral("Connecting…");
    case Phase::Syncing:
        return QStringLiteral("Syncing…");
    case Phase::Full:
        return QStringLiteral("Full");
    case Phase::Stopping:
        return QStringLiteral("Stopping…");
    case Phase::Error:
        return QStringLiteral("Error");
    }
    Q_UNREACHABLE();
}

std::optional<QUrl> ledgerLink(const NodeStatus &status)
{
    if (!status.ledgerSeq)
        return std::nullopt;
    return Explorers::page(Explorers::menu, "ledger", QString::number(*status.ledgerSeq));
}

} // namespace tidewick
