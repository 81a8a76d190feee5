// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/Colors.h"
#include "ui/controls/ControlPalette.h"
#include "ui/icon/MarkBundle.h"
#include "ui/panel/PanelRig.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QPainter>

using namespace tidewick;

class TestNodePanelLook : public QObject
{
    Q_OBJECT

private slots:
    void colors_data();
    void colors();
    void textsStandOut_data();
    void textsStandOut();
    void fillsTheCommandUnderTheMouse();
    void ringsTheFocusedCommand();
    void fadesDisabledCommands();
    void fadesOldFigures_data();
    void fadesOldFigures();
    void iconHasTheTextColor();
    void titleMakesRoomForABadge();
    void rightToLeft();
    void followsTheFont();
};

namespace {

QImage picture(const QWidget *widget)
{
    const QWidget *panel = widget->window();
    return const_cast<QWidget *>(panel)
        ->grab({widget->mapTo(panel, QPoint()), widget->size()})
        .toImage();
}

QIcon redBlock(int width)
{
    QPixmap pixmap(38, 17);
    pixmap.fill(Qt::transparent);
    QPainter(&pixmap).fillRect(19 - width / 2, 0, width, 17, Qt::red);
    return pixmap;
}

} // namespace

void TestNodePanelLook::colors_data()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<QColor>("ground");
    QTest::newRow("light") << false << QColor(240, 240, 242);
    QTest::newRow("dark") << true << QColor(30, 31, 36);
}

void TestNodePanelLook::colors()
{
    QFETCH(bool, dark);
    QFETCH(QColor, ground);
    PanelRig rig;
    rig.panel.setScheme({!dark});
    rig.panel.setScheme({dark});
    const QImage whole = rig.panel.grab().toImage();
    QCOMPARE(whole.pixelColor(1, 1), ground);
    QCOMPARE(whole.pixelColor(whole.width() - 2, whole.height() - 2), ground);
    const QPalette colors = controlPalette({dark});
    const auto looks = [&](const QWidget *row, QPalette::ColorRole role) {
        return distance(inkColor(picture(row)), colors.color(role)) < 12;
    };
    QVERIFY(looks(rig.text("Full"), QPalette::WindowText));
    QVERIFY(looks(rig.text("Following"), QPalette::PlaceholderText));
    QVERIFY(looks(rig.text("Uptime"), QPalette::Text));
    QVERIFY(looks(rig.command("Open Log"), QPalette::WindowText));
}

void TestNodePanelLook::textsStandOut_data()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void TestNodePanelLook::textsStandOut()
{
    QFETCH(bool, dark);
    const QPalette colors = controlPalette({dark});
    const QColor ground = colors.color(QPalette::Window);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::PlaceholderText})
        QVERIFY(contrast(colors.color(role), ground) >= 4.5);
    const QColor fill = over(colors.color(QPalette::AlternateBase), ground);
    QVERIFY(contrast(colors.color(QPalette::WindowText), fill) >= 4.5);
    QVERIFY(contrast(colors.color(QPalette::HighlightedText), colors.color(QPalette::Highlight))
            >= 4.5);
    // Non-text elements need less contrast.
    QVERIFY(contrast(colors.color(QPalette::Link), ground) >= 3);
    const QColor disabled = colors.color(QPalette::Disabled, QPalette::WindowText);
    QVERIFY(contrast(over(disabled, ground), ground) >= 2);
}

void TestNodePanelLook::fillsTheCommandUnderTheMouse()
{
    for (const bool dark : {false, true}) {
        PanelRig rig;
        rig.panel.setScheme({dark});
        const QColor ground = controlPalette({dark}).color(QPalette::Window);
        const QColor fill = over(controlPalette({dark}).color(QPalette::AlternateBase), ground);
        const QAbstractButton *button = rig.command("Validated");
        const auto color = [&] { return picture(button).pixelColor(4, button->height() / 2); };
        QCOMPARE(color(), ground);
        QTest::mouseMove(rig.panel.windowHandle(),
                         button->mapTo(&rig.panel, button->rect().center()));
        QVERIFY(distance(color(), fill) <= 3);
        const QWidget *text = rig.text("Uptime");
        QTest::mouseMove(rig.panel.windowHandle(), text->mapTo(&rig.panel, text->rect().center()));
        QCOMPARE(color(), ground);
    }
}

void TestNodePanelLook::ringsTheFocusedCommand()
{
    PanelRig rig;
    const QColor ring = controlPalette({false}).color(QPalette::Link);
    const auto isRinged = [&](const char *command) {
        const QImage button = picture(rig.command(command));
        return distance(button.pixelColor(button.width() / 2, 0), ring) < 60;
    };
    QVERIFY(!isRinged("Stop Node"));
    rig.command("Stop Node")->setFocus(Qt::TabFocusReason);
    QVERIFY(isRinged("Stop Node"));
    // The ring stays on the command while it is disabled.
    NodeStatus status = everyRow();
    status.phase = Phase::Stopping;
    rig.show(status);
    QVERIFY(isRinged("Stop Node"));
    rig.key(Qt::Key_Down);
    QVERIFY(!isRinged("Stop Node"));
    QVERIFY(isRinged("Clear Storage"));
}

void TestNodePanelLook::fadesDisabledCommands()
{
    NodeStatus status = everyRow();
    status.hasServerInfo = false;
    PanelRig rig(status);
    const QColor ground = controlPalette({false}).color(QPalette::Window);
    QVERIFY(distance(inkColor(picture(rig.command("Copy"))), ground)
            < distance(inkColor(picture(rig.command("Quit"))), ground) * 2 / 3);
    QTest::mouseMove(rig.panel.windowHandle(),
                     rig.command("Copy")->mapTo(&rig.panel, QPoint(30, 10)));
    QCOMPARE(picture(rig.command("Copy")).pixelColor(4, 10), ground);
}

void TestNodePanelLook::fadesOldFigures_data()
{
    colors_data();
}

/// Those that the node no longer updates, because it does not answer or is about to stop.
void TestNodePanelLook::fadesOldFigures()
{
    QFETCH(bool, dark);
    QFETCH(QColor, ground);
    NodeStatus current = everyRow();
    current.storage = QStringLiteral("Storage: next trim");
    const auto silent = [&] {
        NodeStatus status = current;
        status.advice = Advice{Advice::Cause::NoAnswer, QStringLiteral("no answer for 1 minute")};
        return status;
    };
    NodeStatus isStopping = current;
    isStopping.phase = Phase::Stopping;
    for (const NodeStatus &status : {silent(), isStopping}) {
        PanelRig rig(current);
        rig.panel.setScheme({dark});
        const auto strength = [&](const QWidget *row) {
            return contrast(inkColor(picture(row)), ground);
        };
        const QList<const QWidget *> rows{rig.command("Validated"), rig.text("Peers"),
                                          rig.text("Uptime"), rig.text("Memory"),
                                          rig.text("Storage")};
        QList<double> before;
        for (const QWidget *row : rows)
            before += strength(row);
        const double store = strength(rig.text("Store:"));
        rig.show(status);
        for (qsizetype i = 0; i < rows.size(); ++i) {
            QVERIFY(strength(rows.at(i)) < 0.9 * before.at(i));
            QVERIFY(strength(rows.at(i)) >= 4.4);
            QCOMPARE(rows.at(i)->accessibleDescription(),
                     QStringLiteral("Not current: the node no longer updates this"));
        }
        NodeStatus later = status;
        later.uptime = QStringLiteral("9h");
        rig.show(later);
        QVERIFY(!rig.text("Uptime: 9h")->accessibleDescription().isEmpty());
        // Tidewick measures the store itself.
        QCOMPARE(strength(rig.text("Store:")), store);
        QCOMPARE(rig.text("Store:")->accessibleDescription(), QString());

        // On the fill of a command, too.
        QAbstractButton *ledger = rig.command("Validated");
        QTest::mouseMove(rig.panel.windowHandle(),
                         ledger->mapTo(&rig.panel, ledger->rect().center()));
        const QImage filled = picture(ledger);
        const QColor fill = filled.pixelColor(4, filled.height() / 2);
        QVERIFY(fill != ground);
        QVERIFY(
            contrast(inkColor(filled.copy(8, 4, filled.width() - 16, filled.height() - 8)), fill)
            >= 4.4);
        QTest::mouseMove(rig.panel.windowHandle(), {2, 2});

        rig.show(current);
        for (qsizetype i = 0; i < rows.size(); ++i) {
            QCOMPARE(strength(rows.at(i)), before.at(i));
            QCOMPARE(rows.at(i)->accessibleDescription(), QString());
        }
    }
    // Before the first answer, there are no figures yet, and after the end, no node.
    NodeStatus fresh = silent();
    fresh.hasServerInfo = false;
    for (const NodeStatus &status : {fresh, stopped()})
        for (const MenuRow &row : menuRows(status))
            QVERIFY(!row.old);
}

void TestNodePanelLook::iconHasTheTextColor()
{
    PanelRig rig;
    rig.panel.setIcon(redBlock(20));
    for (const bool dark : {false, true}) {
        rig.panel.setScheme({dark});
        const QLabel *title = rig.text("Full");
        const QImage left = rig.panel.grab({0, title->y(), title->x(), title->height()}).toImage();
        QCOMPARE(inkColor(left), controlPalette({dark}).color(QPalette::WindowText));
        // It is aligned with the texts below.
        QCOMPARE(drawn(left).left(), 16);
    }
    rig.panel.setIcon({});
    QCOMPARE(rig.text("Full")->x(), 16);
}

void TestNodePanelLook::titleMakesRoomForABadge()
{
    StatusIcon icons{MarkBundle(MarkBundle::shipped()).bundle()};
    PanelRig rig;
    rig.panel.setIcon(icons.image({}));
    const int beside = rig.text("Full")->x();
    QSet<int> places;
    for (const Phase phase : {Phase::Stopped, Phase::Starting, Phase::Bootstrapping, Phase::Syncing,
                              Phase::Stopping, Phase::Error}) {
        NodeStatus status = everyRow();
        status.phase = phase;
        rig.show(status);
        rig.panel.setIcon(icons.image(StatusIcon::badge(phase)));
        const QLabel *title = rig.text(phaseTitle(phase).toUtf8().constData());
        const QImage left = rig.panel.grab({0, title->y(), title->x(), title->height()}).toImage();
        QVERIFY(drawn(left).right() < title->x() - 8);
        places.insert(title->x());
    }
    // The title does not move from phase to phase.
    QCOMPARE(places.size(), 1);
    QVERIFY(*places.begin() > beside);
}

void TestNodePanelLook::rightToLeft()
{
    PanelRig rig;
    rig.panel.setIcon(redBlock(20));
    const QRect title = rig.text("Full")->geometry();
    const int height = rig.panel.height();
    rig.panel.setLayoutDirection(Qt::RightToLeft);
    QCOMPARE(rig.panel.height(), height);
    const QLabel *mirrored = rig.text("Full");
    QCOMPARE(mirrored->geometry().right(), rig.panel.width() - 1 - title.x());
    for (const QWidget *row : std::initializer_list<const QWidget *>{
             rig.text("Full"), rig.text("Uptime"), rig.command("Quit")}) {
        const QRect used = drawn(picture(row));
        QVERIFY(row->width() - used.right() < 16);
        QVERIFY(used.left() > 16);
    }
    const QImage right = rig.panel
                             .grab({mirrored->geometry().right() + 1, mirrored->y(),
                                    rig.panel.width(), mirrored->height()})
                             .toImage();
    QVERIFY(drawn(right).isValid());
}

void TestNodePanelLook::followsTheFont()
{
    PanelRig rig;
    const QSize before = rig.panel.size();
    QFont font = rig.panel.font();
    font.setPixelSize(32);
    rig.panel.setFont(font);
    QVERIFY(rig.panel.width() > before.width() * 2);
    QVERIFY(rig.panel.height() > before.height());
    const auto pixels = [&](const char *row) {
        return QFontInfo(rig.text(row)->font()).pixelSize();
    };
    QCOMPARE(pixels("Uptime"), 32);
    QVERIFY(pixels("Full") > 36);
    QVERIFY(pixels("Following") < 30);
    QVERIFY(rig.text("Full")->font().bold());
    font.setPixelSize(12);
    rig.panel.setFont(font);
    QCOMPARE(rig.panel.width(), 320);
    QVERIFY(pixels("Full") < 18);
}

TIDEWICK_GUI_TEST_MAIN(TestNodePanelLook)
#include "tst_nodepanel_look.moc"
