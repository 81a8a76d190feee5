// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Surfaces.h"

#include "support/NodeRig.h"
#include "ui/FormRig.h"
#include "ui/SampleStatus.h"
#include "ui/about/AboutWindow.h"
#include "ui/controls/ToolTip.h"
#include "ui/dialogs/AlertRig.h"
#include "ui/icon/StatusIcon.h"
#include "ui/ledger/LedgerRig.h"
#include "ui/panel/PanelRig.h"
#include "ui/tray/RowMenu.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QPainter>
#include <QTest>
#include <QToolTip>

namespace tidewick {

namespace {

/// In letters that most fonts lack.
const QString folder = QStringLiteral("/home/安娜/.local/share/Tidewick");

Figure figureOf(const QString &caption, QWidget &window)
{
    QCoreApplication::processEvents(); // lays out what has changed
    return {caption, window.grab().toImage()};
}

/// The open window of this class, of Qt's own ones that nothing else leads to.
QWidget *openWindow(const char *className)
{
    for (QWidget *widget : QApplication::topLevelWidgets())
        if (widget->isVisible() && widget->inherits(className))
            return widget;
    qFatal("No %s is open", className);
}

/// The images of all phases, a row for each, on a panel of this colour.
Figure trayImages(const QString &caption, const QColor &panel, const QColor &ink)
{
    constexpr std::array sizes{16, 22, 32, 48};
    constexpr std::array phases{Phase::Stopped, Phase::Starting, Phase::Connecting, Phase::Syncing,
                                Phase::Full,    Phase::Stopping, Phase::Error};
    constexpr int cell = 64;
    const qreal ratio = qApp->devicePixelRatio();
    StatusIcon icon(Bundle::main());
    icon.setColor(ink);
    QImage picture(QSize(cell * int(sizes.size()), cell * int(phases.size())) * ratio,
                   QImage::Format_RGB32);
    picture.fill(panel);
    QPainter painter(&picture);
    QPointF middle(cell * ratio / 2, cell * ratio / 2);
    for (const Phase phase : phases) {
        const QIcon image = icon.image(StatusIcon::badge(phase));
        QPointF place = middle;
        for (const int size : sizes) {
            const int side = int(size * ratio);
            const QImage drawn = image.pixmap(QSize(side, side), 1).toImage();
            painter.drawImage(place.toPoint() - drawn.rect().center(), drawn);
            place.rx() += cell * ratio;
        }
        middle.ry() += cell * ratio;
    }
    return {caption, picture};
}

Figure menu(const Scheme &scheme)
{
    RowMenu rows(RowMenu::Drawing::ByUs);
    rows.setScheme(scheme);
    rows.setRows(menuRows(sampleStatus()));
    rows.popup({});
    rows.setActiveAction(rows.actions().constLast());
    return figureOf(QStringLiteral("menu"), rows);
}

Figure panel(const QString &caption, const Scheme &scheme, const NodeStatus &status)
{
    PanelRig rig(status);
    StatusIcon icon(Bundle::main());
    icon.setColor(scheme.dark ? StatusIcon::onDarkPanel() : StatusIcon::onLightPanel());
    rig.panel.setIcon(icon.image(StatusIcon::badge(status.phase)));
    rig.panel.setBoundByScreen(false);
    rig.panel.setScheme(scheme);
    return figureOf(caption, rig.panel);
}

void addSettings(std::vector<Figure> &figures, const Scheme &scheme)
{
    SettingsRig rig;
    rig.window->setBoundByScreen(false);
    rig.window->setScheme(scheme);
    figures.push_back(figureOf(QStringLiteral("settings"), *rig.window));
    Picker *picker = rig.picker(SettingsRig::AfterFull);
    picker->showPopup();
    figures.push_back(figureOf(QStringLiteral("list of choices"), *picker->view()->window()));
    picker->hidePopup();

    ToolTip::setScheme(scheme);
    for (const QString &text :
         {folder, QStringLiteral("Tidewick: Connecting…\n1 peers (connected)\nNo valid list of "
                                 "validators: list.example cannot be reached.")}) {
        QToolTip::showText({}, ToolTip::plain(text), rig.window.get());
        figures.push_back(figureOf(QStringLiteral("tooltip"), *openWindow("QTipLabel")));
        QToolTip::hideText();
    }
}

Figure about(const Scheme &scheme)
{
    NodeRig node;
    writeFile(node.bundle().resource("build-info"), "compiler=GNU 12.2.0\nnode=2.4.0\n");
    AboutWindow window(node.node(), QStringLiteral("1.0.0"));
    window.setBoundByScreen(false);
    window.setScheme(scheme);
    showActive(window);
    button(window, "Build details")->click();
    return figureOf(QStringLiteral("about"), window);
}

void addLedger(std::vector<Figure> &figures, const Scheme &scheme)
{
    LedgerRig rig({800, 780});
    rig.window.setScheme(scheme);
    figures.push_back(figureOf(QStringLiteral("ledger, empty"), rig.window));
    rig.fill();
    figures.push_back(figureOf(QStringLiteral("ledger"), rig.window));
    rig.pointAt(rig.bar(40));
    rig.window.resize(1300, 1000);
    figures.push_back(figureOf(QStringLiteral("ledger, wide"), rig.window));
    rig.stream.fail();
    rig.stream.clock().advance(std::chrono::minutes(2));
    figures.push_back(figureOf(QStringLiteral("ledger, wide, lost"), rig.window));
    rig.window.resize(10, 10);
    figures.push_back(figureOf(QStringLiteral("ledger, smallest"), rig.window));
}

Figure question(const Scheme &scheme)
{
    AlertRig rig;
    rig.alerts.setScheme(scheme);
    Confirmation question = AlertRig::usualQuestion();
    question.path = folder + QStringLiteral("/db");
    rig.ask(question);
    return figureOf(QStringLiteral("question"), *shownAlert());
}

Figure error(const Scheme &scheme)
{
    AlertRig rig;
    rig.alerts.setScheme(scheme);
    rig.alerts.showError(QStringLiteral("The node ended unexpectedly (exit code 1).\n\n"
                                        "2026-Jan-01 00:00:00 Application:NFO starting\n"
                                        "2026-Jan-01 00:00:01 NodeStore:FTL cannot open the store"),
                         QStringLiteral("Another program uses port 51235."));
    return figureOf(QStringLiteral("error"), *shownAlert());
}

} // namespace

std::vector<Figure> surfaces(const Scheme &scheme)
{
    std::vector<Figure> figures;
    figures.push_back(trayImages(QStringLiteral("light panel: 16, 22, 32, 48"), QColor(0xf2f2f4),
                                 StatusIcon::onLightPanel()));
    figures.push_back(trayImages(QStringLiteral("dark panel: 16, 22, 32, 48"), QColor(0x1e1f24),
                                 StatusIcon::onDarkPanel()));
    figures.push_back(menu(scheme));
    figures.push_back(panel(QStringLiteral("panel"), scheme, sampleStatus()));
    figures.push_back(panel(QStringLiteral("panel with advice"), scheme, withAdvice()));
    addSettings(figures, scheme);
    figures.push_back(about(scheme));
    figures.push_back(question(scheme));
    figures.push_back(error(scheme));
    addLedger(figures, scheme);
    return figures;
}

} // namespace tidewick
