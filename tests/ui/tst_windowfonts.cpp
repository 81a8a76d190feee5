// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/DrawnTexts.h"
#include "ui/FormRig.h"
#include "ui/TestFonts.h"
#include "ui/about/AboutWindow.h"
#include "ui/controls/CardRow.h"
#include "ui/dialogs/AlertRig.h"
#include "ui/ledger/LedgerRig.h"
#include "ui/panel/PanelRig.h"

#include <QApplication>
#include <QLabel>

using namespace tidewick;

/// Every window with unusual fonts: all texts stay readable.
class TestWindowFonts : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void detectsFlaws();
    void nodePanel_data() { addTestFonts(); }
    void nodePanel();
    void settings_data() { addTestFonts(); }
    void settings();
    void about_data() { addTestFonts(); }
    void about();
    void ledger_data() { addTestFonts(); }
    void ledger();
    void ledgerAtMinimumSize_data() { addTestFonts(); }
    void ledgerAtMinimumSize();
    void alerts_data() { addTestFonts(); }
    void alerts();

private:
    static void useTestFont();

    QFont m_usual = QApplication::font();
};

namespace {

/// Has glyphs that reach as far up and down as any.
const QString highAndLow = QStringLiteral("Ägypten, gj ÅÇ 漢字");

QString flawsOf(QWidget &window)
{
    QCoreApplication::processEvents();
    return textFlaws(window).join(u'\n');
}

/// The rows with a label and a control, each on a single line, whose baselines differ.
QStringList unevenRows(const QWidget &window)
{
    QStringList uneven;
    for (const CardRow *row : window.findChildren<CardRow *>()) {
        QList<qreal> baselines;
        for (QWidget *part : row->findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
            const QList<DrawnText> texts = drawnTexts(*part);
            if (texts.size() == 1)
                baselines += texts.constFirst().baseline + part->y();
        }
        if (baselines.size() == 2 && !qFuzzyCompare(baselines.constFirst(), baselines.constLast()))
            uneven +=
                QStringLiteral("%1 and %2").arg(baselines.constFirst()).arg(baselines.constLast());
    }
    return uneven;
}

} // namespace

void TestWindowFonts::cleanup()
{
    QApplication::setFont(m_usual);
    QApplication::setLayoutDirection(Qt::LeftToRight);
}

void TestWindowFonts::useTestFont()
{
    QFETCH(QByteArray, kind);
    QFETCH(qreal, points);
    QFETCH(Qt::LayoutDirection, direction);
    QApplication::setFont(testFont(kind, points));
    QApplication::setLayoutDirection(direction);
}

/// Checks the check that the other tests rely on.
void TestWindowFonts::detectsFlaws()
{
    const QString text = QStringLiteral("Readings");
    QWidget window;
    QLabel label(text, &window);
    label.setMargin(1);
    label.adjustSize();
    QCOMPARE(textFlaws(window).join(u'\n'), QString());
    label.resize(label.width(), label.height() / 2);
    QVERIFY(textFlaws(window).join(u'\n').startsWith(QStringLiteral("outside: ")));
    label.adjustSize();
    QLabel other(text, &window);
    other.setMargin(1);
    other.adjustSize();
    other.move(label.width() / 2, 1);
    QCOMPARE(textFlaws(window), QStringList{text + QStringLiteral(" on ") + text});
}

void TestWindowFonts::nodePanel()
{
    useTestFont();
    NodeStatus status = withAdvice();
    status.detail = highAndLow;
    status.storage = highAndLow;
    PanelRig rig(status);
    rig.panel.setBoundByScreen(false);
    rig.panel.setHint(highAndLow);
    QCOMPARE(flawsOf(rig.panel), QString());
}

void TestWindowFonts::settings()
{
    useTestFont();
    const SettingsRig rig;
    rig.window->setBoundByScreen(false);
    QCOMPARE(flawsOf(*rig.window), QString());
    QCOMPARE(unevenRows(*rig.window), QStringList());
}

void TestWindowFonts::about()
{
    useTestFont();
    NodeRig node;
    writeFile(node.bundle().resource("build-info"), "compiler=GNU 12\nÅÇ=Ägypten, gj\n");
    AboutWindow window(node.node(), node.bundle().bundle().version());
    window.setBoundByScreen(false);
    showActive(window);
    button(window, "Build details")->click();
    QCOMPARE(flawsOf(window), QString());
}

void TestWindowFonts::ledger()
{
    useTestFont();
    LedgerRig rig({1600, 1400});
    QCOMPARE(flawsOf(rig.window), QString());
    rig.fill();
    QCOMPARE(flawsOf(rig.window), QString());
}

void TestWindowFonts::ledgerAtMinimumSize()
{
    useTestFont();
    LedgerRig rig({10, 10});
    rig.fill();
    QCOMPARE(rig.window.size(), rig.window.minimumSize());
    QCOMPARE(flawsOf(rig.window), QString());
    rig.pointAt(rig.bar(0));
    QCOMPARE(flawsOf(rig.window), QString());
}

void TestWindowFonts::alerts()
{
    useTestFont();
    {
        AlertRig rig;
        rig.alerts.showError(highAndLow + QStringLiteral("\n\n") + highAndLow, highAndLow);
        shownAlert()->setBoundByScreen(false);
        QCOMPARE(flawsOf(*shownAlert()), QString());
    }
    AlertRig rig;
    rig.ask({highAndLow, highAndLow, highAndLow, highAndLow, QStringLiteral("ÅÇ"),
             QStringLiteral("gj")});
    shownAlert()->setBoundByScreen(false);
    QCOMPARE(flawsOf(*shownAlert()), QString());
}

TIDEWICK_GUI_TEST_MAIN(TestWindowFonts)
#include "tst_windowfonts.moc"
