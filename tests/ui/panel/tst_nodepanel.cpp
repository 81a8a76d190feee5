// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/panel/PanelRig.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QScreen>

using namespace tidewick;

class TestNodePanel : public QObject
{
    Q_OBJECT

private slots:
    void showsTheMenu_data();
    void showsTheMenu();
    void changesInPlace();
    void paintsOnlyWhatChanged();
    void isAsHighAsItsRows();
    void staysPutWithoutADetail();
    void staysPutWithoutALink();
    void scrollsOnASmallScreen();
    void showsTheHint();
};

namespace {

/// Records the names of the rows that are painted; "" stands for all widgets without a name.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget &panel)
    {
        for (QWidget *widget : panel.findChildren<QWidget *>())
            widget->installEventFilter(this);
    }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (const auto *widget = qobject_cast<QWidget *>(object);
            widget && event->type() == QEvent::Paint)
            painted.insert(widget->accessibleName());
        return false;
    }

    QSet<QString> painted;
};

} // namespace

void TestNodePanel::showsTheMenu_data()
{
    QTest::addColumn<QList<MenuRow>>("rows");
    const auto row = [](const char *name, const NodeStatus &status) {
        QTest::newRow(name) << menuRows(status);
    };
    row("before anything", {});
    row("everything", everyRow());
    row("no detail", withDetail({}));
    NodeStatus status = everyRow();
    status.phase = Phase::Stopping;
    row("stopping", status);
    status.phase = Phase::Error;
    status.hasProcess = false;
    status.hasServerInfo = false;
    status.ledgerSeq.reset();
    row("ended", status);
    QTest::newRow("nothing") << QList<MenuRow>();
}

void TestNodePanel::showsTheMenu()
{
    QFETCH(QList<MenuRow>, rows);
    // Whatever was shown before.
    for (const NodeStatus &before : {NodeStatus(), everyRow()}) {
        PanelRig rig(before);
        rig.panel.setRows(rows);
        QCOMPARE(rig.lines(), rowLines(rows));
    }
    QCOMPARE(PanelRig().panel.windowTitle(), QStringLiteral("Tidewick"));
}

void TestNodePanel::changesInPlace()
{
    PanelRig rig;
    const auto before = rig.panel.findChildren<QWidget *>();
    const QLabel *uptime = rig.text("Uptime");
    NodeStatus status = everyRow();
    status.uptime = QStringLiteral("27h 4m");
    status.errorText.reset();
    rig.show(status);
    QCOMPARE(uptime->accessibleName(), QStringLiteral("Uptime: 27h 4m"));
    rig.show(everyRow());
    QCOMPARE(rig.panel.findChildren<QWidget *>(), before);
}

void TestNodePanel::paintsOnlyWhatChanged()
{
    PanelRig rig;
    QCoreApplication::processEvents();
    PaintCounter counter(rig.panel);
    rig.show(everyRow());
    QCoreApplication::processEvents();
    QCOMPARE(counter.painted, QSet<QString>());

    NodeStatus status = everyRow();
    status.uptime = QStringLiteral("27h 4m");
    rig.show(status);
    QCoreApplication::processEvents();
    QCOMPARE(counter.painted, (QSet<QString>{{}, QStringLiteral("Uptime: 27h 4m")}));
}

void TestNodePanel::isAsHighAsItsRows()
{
    NodeStatus status = everyRow();
    status.errorText.reset();
    PanelRig rig(status);
    const QSize before = rig.panel.size();
    const auto spare = [&rig] {
        const QAbstractButton *last = rig.command("Quit");
        return rig.panel.height() - last->mapTo(&rig.panel, last->rect().bottomLeft()).y();
    };
    const int bottom = spare();
    rig.show(everyRow());
    QCOMPARE(rig.panel.width(), before.width());
    QCOMPARE(rig.panel.height(), before.height() + rig.command("Show Error")->height());
    QCOMPARE(spare(), bottom);
    rig.show(status);
    QCOMPARE(rig.panel.size(), before);
    status.storage = pathOf(300);
    rig.show(status);
    QVERIFY(rig.panel.height() > before.height());
    QCOMPARE(rig.panel.width(), before.width());
    QCOMPARE(spare(), bottom);
}

/// The rows below must not move away from under the mouse.
void TestNodePanel::staysPutWithoutADetail()
{
    PanelRig rig;
    const QSize size = rig.panel.size();
    const int ledger = rig.command("Validated")->y();
    rig.show(withDetail({}));
    QCOMPARE(rig.panel.size(), size);
    QCOMPARE(rig.command("Validated")->y(), ledger);
}

void TestNodePanel::staysPutWithoutALink()
{
    PanelRig rig;
    const QSize size = rig.panel.size();
    const QRect link = rig.command("Validated")->geometry();
    NodeStatus status = everyRow();
    status.ledgerSeq.reset();
    rig.show(status);
    QCOMPARE(rig.text("Validated")->geometry(), link);
    QCOMPARE(rig.panel.size(), size);
}

void TestNodePanel::scrollsOnASmallScreen()
{
    PanelRig rig;
    const int width = rig.panel.width();
    rig.show(withDetail(pathOf(2000)));
    QCOMPARE(rig.panel.width(), width);
    QVERIFY(rig.panel.frameGeometry().height() <= rig.panel.screen()->availableSize().height());
    const auto isInView = [&rig](const QWidget *row) {
        return rig.panel.rect().contains(QRect(row->mapTo(&rig.panel, QPoint()), row->size()));
    };
    QVERIFY(!isInView(rig.command("Quit")));
    rig.key(Qt::Key_End);
    QVERIFY(isInView(rig.command("Quit")));
    for (const QLabel *label : rig.panel.findChildren<QLabel *>())
        QVERIFY(label->mapTo(&rig.panel, label->rect().topRight()).x() < width - 10);
    rig.show(everyRow());
    QVERIFY(isInView(rig.text("Full")));
    QVERIFY(isInView(rig.command("Quit")));
}

void TestNodePanel::showsTheHint()
{
    PanelRig rig;
    const QSize size = rig.panel.size();
    const QStringList lines = rig.lines();
    rig.panel.setHint(QStringLiteral("Install <this & that>"));
    QCOMPARE(rig.lines(),
             lines + QStringList({QStringLiteral("-"), QStringLiteral("Install <this & that>")}));
    QVERIFY(rig.panel.height() > size.height());
    rig.panel.setHint({});
    QCOMPARE(rig.lines(), lines);
    QCOMPARE(rig.panel.size(), size);
}

TIDEWICK_GUI_TEST_MAIN(TestNodePanel)
#include "tst_nodepanel.moc"
