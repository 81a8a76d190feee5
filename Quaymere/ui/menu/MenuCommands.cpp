// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/menu/MenuCommands.h"

#include "desktop/FileBrowser.h"
#include "platform/json/JsonWrite.h"

#include <QLoggingCategory>

namespace tidewick {

namespace {

Q_LOGGING_CATEGORY(lcMenu, "tidewick.menu", QtWarningMsg)

} // namespace

MenuCommands::MenuCommands(NodeController &node, MenuHost host)
    : m_node(node), m_host(std::move(host))
{
}

void MenuCommands::run(MenuCommand command)
{
    switch (command) {
    case MenuCommand::None:
        return;
    case MenuCommand::OpenLedger:
        if (const auto link = ledgerLink(m_node.status()))
            open(*link);
        return;
    case MenuCommand::StartNode:
        return m_node.start();
    case MenuCommand::StopNode:
        return m_node.stop();
    case MenuCommand::ClearStorage:
        m_node.clearStorage();
        return m_host.bringQuestionForward(); // one asked earlier may be hidden by now
    case MenuCommand::OpenDataFolder:
        return openPath(m_node.dataDirectory());
    case MenuCommand::OpenLog:
        return openPath(m_node.dataDirectory() / "debug.log");
    case MenuCommand::CopyServerInfo:
        return copyServerInfo();
    case MenuCommand::ShowError:
        return showError();
    case MenuCommand::LiveLedger:
        return m_host.openWindow(QStringLiteral("ledger"));
    case MenuCommand::Settings:
        return m_host.openWindow(QStringLiteral("settings"));
    case MenuCommand::About:
        return m_host.openWindow(QStringLiteral("about"));
    case MenuCommand::Quit:
        return emit quitRequested();
    case MenuCommand::InstallNode:
        if (const auto page = m_node.config().nodePage())
            openPath(*page);
    }
}

void MenuCommands::open(const QUrl &url) const
{
    if (!m_host.openUrl(url))
        qCWarning(lcMenu, "nothing on this desktop opens %s", qUtf8Printable(url.toString()));
}

void MenuCommands::openPath(const std::filesystem::path &path) const
{
    open(FileBrowser::url(path));
}

void MenuCommands::showError() const
{
    const NodeStatus &status = m_node.status();
    if (status.errorText)
        m_host.showError(*status.errorText, status.advice ? status.advice->text : QString());
}

void MenuCommands::copyServerInfo() const
{
    if (const auto &info = m_node.lastServerInfo())
        m_host.copy(JsonWrite::pretty(*info));
}

} // namespace tidewick
