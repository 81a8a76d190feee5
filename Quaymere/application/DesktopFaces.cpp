// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/DesktopFaces.h"

#include "platform/files/Defaults.h"
#include "ui/DesktopMenu.h"
#include "ui/controls/BringForward.h"
#include "ui/controls/ControlPalette.h"
#include "ui/controls/ToolTip.h"

#include <QApplication>
#include <QDesktopServices>
#include <QWindow>

#include <utility>

namespace tidewick {

namespace {

using namespace std::chrono_literals;

/// Desktop panels may start late in a session, and one that restarts is back soon.
constexpr std::chrono::seconds grace = 5s;

/// Set once the advice below has been given.
const QString adviceGiven = QStringLiteral("trayAdviceGiven");

bool isDesktop(QLatin1String name)
{
    const QString desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
    return desktops.split(u':').contains(name, Qt::CaseInsensitive);
}

/// Whether the desktop's panel is dark even where windows are light: always on GNOME, by default on
/// Xfce.
bool hasDarkPanel()
{
    return isDesktop(QLatin1String("GNOME")) || isDesktop(QLatin1String("XFCE"));
}

/// Advice on adding a tray to a desktop that is known to have none; empty for other desktops.
QString trayAdvice()
{
    if (!isDesktop(QLatin1String("GNOME")))
        return {};
    return QStringLiteral(
        "To have Tidewick in the top bar, install the extension “AppIndicator and "
        "KStatusNotifierItem Support” (package gnome-shell-extension-appindicator), log out and in "
        "again, and enable it: “gnome-extensions enable ubuntu-appindicators@ubuntu.com”.");
}

/// Frames that Qt draws keep the colours of the palette in which they were made.
void renewFrames()
{
    if (!QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        return;
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (QWindow *window : windows) {
        const Qt::WindowFlags flags = window->flags();
        window->setFlags(flags | Qt::FramelessWindowHint);
        window->setFlags(flags);
    }
}

} // namespace

DesktopFaces::DesktopFaces(NodeController &node)
    : m_node(node), m_windows(node, m_appearance, QDesktopServices::openUrl),
      m_commands(node, desktopMenuHost(m_windows, m_alerts, QDesktopServices::openUrl)),
      m_icon(Bundle::main())
{
    node.setConfirm(
        [this](Confirmation question) { return m_alerts.confirm(std::move(question)); });
    connect(&node, &NodeController::statusChanged, this, &DesktopFaces::followStatus);
    connect(&m_commands, &MenuCommands::quitRequested, this, &DesktopFaces::quitRequested);
    connect(&m_appearance, &Appearance::changed, this, &DesktopFaces::followAppearance);
    connect(&m_trayHost, &TrayHost::changed, this, &DesktopFaces::followTrayHost);
    connect(&m_grace, &QTimer::timeout, this, &DesktopFaces::settle);
    m_grace.setSingleShot(true);
    m_grace.start(grace);
    followAppearance();
}

DesktopFaces::~DesktopFaces()
{
    m_node.setConfirm({});
}

void DesktopFaces::comeForward()
{
    if (isInTray() || willBeInTray())
        m_commands.run(MenuCommand::LiveLedger);
    else
        showPanel();
}

void DesktopFaces::comeForwardOnceSettled()
{
    if (m_tray || m_panel || willBeInTray())
        comeForward();
    else
        m_isWanted = true;
}

void DesktopFaces::followTrayHost()
{
    if (isInTray() || m_trayHost.kind() == TrayHost::Kind::StatusNotifier) {
        m_grace.stop();
        settle();
    } else if (!m_grace.isActive()) {
        m_grace.start(grace);
    }
}

void DesktopFaces::settle()
{
    if (!m_tray && m_trayHost.kind() != TrayHost::Kind::None)
        makeTrayItem();
    if (!isInTray() && !(m_panel && m_panel->isVisible()))
        showPanel();
    else if (isInTray() && m_panel)
        m_panel->hide();
    if (std::exchange(m_isWanted, false))
        comeForward();
}

bool DesktopFaces::isInTray() const
{
    return m_tray
           && m_trayHost.has(m_tray->drawing() == RowMenu::Drawing::ByHost
                                 ? TrayHost::Kind::StatusNotifier
                                 : TrayHost::Kind::XEmbed);
}

/// No face has been chosen yet, but there is a tray, even if a better one may still appear.
bool DesktopFaces::willBeInTray() const
{
    return !m_tray && !m_panel && m_trayHost.kind() != TrayHost::Kind::None;
}

void DesktopFaces::makeTrayItem()
{
    const bool byHost = m_trayHost.kind() == TrayHost::Kind::StatusNotifier;
    m_tray = std::make_unique<TrayItem>(byHost ? RowMenu::Drawing::ByHost : RowMenu::Drawing::ByUs,
                                        icon(), menuRows(m_node.status()), toolTip());
    m_tray->setScheme(m_appearance.scheme());
    connect(m_tray.get(), &TrayItem::commandChosen, &m_commands, &MenuCommands::run);
    connect(m_tray.get(), &TrayItem::panelWanted, this, &DesktopFaces::togglePanel);
}

void DesktopFaces::showPanel()
{
    if (!m_panel) {
        m_panel = std::make_unique<NodePanel>();
        connect(m_panel.get(), &NodePanel::commandChosen, &m_commands, &MenuCommands::run);
        if (!isInTray())
            m_panel->setHint(adviceForOnce());
        m_panel->setScheme(m_appearance.scheme());
        m_panel->setIcon(icon());
        m_panel->setRows(rowsWithAdvice(m_node.status()));
    }
    m_panel->setOnlyFace(!isInTray());
    bringForward(*m_panel);
}

void DesktopFaces::togglePanel()
{
    if (m_panel && m_panel->isActiveWindow())
        m_panel->hide();
    else
        showPanel();
}

QString DesktopFaces::adviceForOnce()
{
    Defaults defaults = Defaults::standard();
    QString advice = trayAdvice();
    if (advice.isEmpty() || defaults.integer(adviceGiven) != 0)
        return {};
    defaults.setInteger(adviceGiven, 1);
    return advice;
}

void DesktopFaces::followStatus()
{
    if (m_tray) {
        m_tray->setRows(menuRows(m_node.status()));
        m_tray->setToolTip(toolTip());
    }
    if (m_panel)
        m_panel->setRows(rowsWithAdvice(m_node.status()));
    updateIcon();
}

void DesktopFaces::followAppearance()
{
    // For what has no palette of its own, such as the frames that Qt draws on Wayland. If the
    // portal states nothing, the desktop's own palette decides, and must not be covered.
    QApplication::setPalette(m_appearance.isStated() ? controlPalette(m_appearance.scheme())
                                                     : QPalette());
    renewFrames();
    m_icon.setColor(m_appearance.isDark() || hasDarkPanel() ? StatusIcon::onDarkPanel()
                                                            : StatusIcon::onLightPanel());
    m_alerts.setScheme(m_appearance.scheme());
    ToolTip::setScheme(m_appearance.scheme());
    if (m_tray)
        m_tray->setScheme(m_appearance.scheme());
    if (m_panel)
        m_panel->setScheme(m_appearance.scheme());
    updateIcon();
}

void DesktopFaces::updateIcon()
{
    if (m_tray)
        m_tray->setIcon(icon());
    if (m_panel)
        m_panel->setIcon(icon());
}

QIcon DesktopFaces::icon()
{
    return m_icon.image(StatusIcon::badge(m_node.status().phase));
}

QStringList DesktopFaces::toolTip() const
{
    QStringList lines = summaryLines(m_node.status());
    lines.first().prepend(QLatin1String("Tidewick: "));
    return lines;
}

} // namespace tidewick
