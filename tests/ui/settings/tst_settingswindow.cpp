// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/files/Files.h"
#include "support/Surroundings.h"
#include "ui/FormRig.h"
#include "ui/controls/TextLabel.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QWheelEvent>

using namespace tidewick;

class TestSettingsWindow : public QObject
{
    Q_OBJECT

private slots:
    void showsTheForm();
    void offersChoices();
    void picksByMouse();
    void picksByKeyboard();
    void storesAtOnce_data();
    void storesAtOnce();
    void dropsACustomValueOnceChanged();
    void tabGoesFromTopToBottom();
    void wheelChangesNothing();
    void escapeCloses();
    void showsWhatOthersWrite();
    void clampsStoredValues_data();
    void clampsStoredValues();
    void clampsEachTimeItIsShown();
    void storesNothingJustByBeingShown();
    void reportsWhenNothingCanBeStored();
    void namesItsControls();

private:
    using Rig = SettingsRig;
};

namespace {

QString nameOf(QWidget *widget)
{
    return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
}

/// The name of the label that belongs to a picker.
QString labelOf(QWidget *widget)
{
    const auto labels =
        QAccessible::queryAccessibleInterface(widget)->relations(QAccessible::Label);
    return labels.size() == 1 ? labels.constFirst().first->text(QAccessible::Name) : QString();
}

TextLabel *alarm(const QWidget &window)
{
    for (auto *text : window.findChildren<TextLabel *>()) {
        if (text->foregroundRole() == QPalette::BrightText)
            return text;
    }
    return nullptr;
}

} // namespace

void TestSettingsWindow::showsTheForm()
{
    Rig rig;
    QCOMPARE(rig.window->windowTitle(), QStringLiteral("Tidewick Settings"));
    QCOMPARE(rig.window->width(), 520);
    QCOMPARE(
        shownTexts(*rig.window),
        QStringList(
            {QStringLiteral("Running"), QStringLiteral("Stop after being in sync for"),
             QStringLiteral("Stop after running for"),
             QStringLiteral("Stop if free disk space falls below"),
             QStringLiteral("Tidewick follows the XRP Ledger until you stop it; these let it stop "
                            "on its own. Changes apply the next time the node starts."),
             QStringLiteral("Disk space"), QStringLiteral("Tidy up each time the store grows by"),
             QStringLiteral("Store now"), QStringLiteral("– · –"),
             QStringLiteral("Tidewick keeps only recent ledgers. New ledgers make its store grow, "
                            "and each time it has grown by this much the node trims it back in "
                            "the background, without stopping. A smaller step uses less disk and "
                            "trims more often."),
             QStringLiteral("Advanced"), QStringLiteral("Data folder"),
             QStringLiteral("Node configuration"),
             QStringLiteral("The ledger store, logs and the node's configuration live in the data "
                            "folder. Tidewick writes the configuration from these settings each "
                            "time the node starts, so edits to the file are replaced.")}));
    QCOMPARE(rig.picker(Rig::AfterFull)->currentText(), QStringLiteral("Never"));
    QCOMPARE(rig.picker(Rig::HardCap)->currentText(), QStringLiteral("No limit"));
    QCOMPARE(rig.picker(Rig::DiskGuard)->currentText(), QStringLiteral("10 GB"));
    QCOMPARE(rig.picker(Rig::RoundGrowth)->currentText(), QStringLiteral("2 GB (recommended)"));
}

void TestSettingsWindow::offersChoices()
{
    Rig rig("autoStopAfterFullMinutes=90\ndiskGuardFreeGB=15\nroundGrowthMiB=1536\n");
    QCOMPARE(rig.entries(Rig::AfterFull).join(u','),
             QStringLiteral("Never,30 minutes,1 hour,90 minutes,4 hours,1 day"));
    QCOMPARE(rig.entries(Rig::HardCap).join(u','),
             QStringLiteral("No limit,1 hour,4 hours,12 hours,1 day,1 week"));
    QCOMPARE(rig.entries(Rig::DiskGuard).join(u','),
             QStringLiteral("5 GB,10 GB,15 GB,20 GB,50 GB"));
    QCOMPARE(rig.entries(Rig::RoundGrowth).join(u','),
             QStringLiteral("0.5 GB,1 GB,1.5 GB,2 GB (recommended),4 GB,8 GB,16 GB"));
    QCOMPARE(rig.picker(Rig::AfterFull)->currentText(), QStringLiteral("90 minutes"));
    QCOMPARE(rig.picker(Rig::DiskGuard)->currentText(), QStringLiteral("15 GB"));
    QCOMPARE(rig.picker(Rig::RoundGrowth)->currentText(), QStringLiteral("1.5 GB"));
}

void TestSettingsWindow::picksByMouse()
{
    // For this long, the click that opens the list cannot pick an entry.
    QApplication::setDoubleClickInterval(0);
    Rig rig;
    Picker *picker = rig.picker(Rig::HardCap);
    QTest::mouseClick(picker, Qt::LeftButton);
    QTRY_VERIFY(picker->view()->isVisible());
    const QRect entry = picker->view()->visualRect(picker->model()->index(4, 0));
    QTest::mouseMove(picker->view()->viewport(), entry.center());
    QTest::mouseClick(picker->view()->viewport(), Qt::LeftButton, {}, entry.center());
    QTRY_VERIFY(!picker->view()->isVisible());
    QCOMPARE(picker->currentText(), QStringLiteral("1 day"));
    QVERIFY(rig.storedSettings().contains("autoStopHardCapMinutes=1440\n"));
}

void TestSettingsWindow::picksByKeyboard()
{
    Rig rig;
    // Keys have no effect until a control has the focus.
    rig.key(Qt::Key_Down);
    QVERIFY(!std::filesystem::exists(rig.defaults.file()));
    rig.key(Qt::Key_Tab);
    rig.key(Qt::Key_Down);
    rig.key(Qt::Key_Down);
    QVERIFY(rig.storedSettings().contains("autoStopAfterFullMinutes=60\n"));
    rig.key(Qt::Key_Up);
    QVERIFY(rig.storedSettings().contains("autoStopAfterFullMinutes=30\n"));
    rig.key(Qt::Key_End);
    QVERIFY(rig.storedSettings().contains("autoStopAfterFullMinutes=1440\n"));
    rig.key(Qt::Key_N);
    QVERIFY(rig.storedSettings().contains("autoStopAfterFullMinutes=0\n"));
    rig.key(Qt::Key_Tab);
    rig.key(Qt::Key_1);
    rig.key(Qt::Key_2);
    QVERIFY(rig.storedSettings().contains("autoStopHardCapMinutes=720\n"));
    rig.key(Qt::Key_Space);
    QVERIFY(rig.picker(Rig::HardCap)->view()->isVisible());
    QTest::keyClick(rig.picker(Rig::HardCap)->view(), Qt::Key_Down);
    QTest::keyClick(rig.picker(Rig::HardCap)->view(), Qt::Key_Return);
    QVERIFY(!rig.picker(Rig::HardCap)->view()->isVisible());
    QVERIFY(rig.storedSettings().contains("autoStopHardCapMinutes=1440\n"));
}

void TestSettingsWindow::storesAtOnce_data()
{
    QTest::addColumn<int>("question");
    QTest::addColumn<QByteArray>("stored");
    QTest::newRow("in sync") << int(Rig::AfterFull) << QByteArray("autoStopAfterFullMinutes=30\n");
    QTest::newRow("running") << int(Rig::HardCap) << QByteArray("autoStopHardCapMinutes=60\n");
    QTest::newRow("free space") << int(Rig::DiskGuard) << QByteArray("diskGuardFreeGB=20\n");
    QTest::newRow("growth") << int(Rig::RoundGrowth) << QByteArray("roundGrowthMiB=4096\n");
}

void TestSettingsWindow::storesAtOnce()
{
    QFETCH(int, question);
    QFETCH(QByteArray, stored);
    Rig rig("other=7\n");
    QTest::keyClick(rig.picker(Rig::Question(question)), Qt::Key_Down);
    QCOMPARE(rig.storedSettings(),
             QByteArray("[General]\n")
                 + (stored < "other" ? stored + "other=7\n" : "other=7\n" + stored));
}

void TestSettingsWindow::dropsACustomValueOnceChanged()
{
    Rig rig("autoStopAfterFullMinutes=90\n");
    QTest::keyClick(rig.picker(Rig::AfterFull), Qt::Key_Down);
    QCOMPARE(rig.entries(Rig::AfterFull).join(u','),
             QStringLiteral("Never,30 minutes,1 hour,4 hours,1 day"));
    QCOMPARE(rig.picker(Rig::AfterFull)->currentText(), QStringLiteral("4 hours"));
    QVERIFY(rig.storedSettings().contains("autoStopAfterFullMinutes=240\n"));
}

void TestSettingsWindow::tabGoesFromTopToBottom()
{
    Rig rig;
    const QList<QWidget *> expected{rig.picker(Rig::AfterFull),
                                    rig.picker(Rig::HardCap),
                                    rig.picker(Rig::DiskGuard),
                                    rig.picker(Rig::RoundGrowth),
                                    button(*rig.window, "Show in Finder"),
                                    button(*rig.window, "View")};
    for (int round = 0; round < 2; ++round) {
        for (const QWidget *widget : expected) {
            rig.key(Qt::Key_Tab);
            QCOMPARE(rig.window->focusWidget(), widget);
        }
    }
    QTest::keyClick(rig.window->windowHandle(), Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(rig.window->focusWidget(), expected.at(4));
}

void TestSettingsWindow::wheelChangesNothing()
{
    Rig rig;
    Picker *picker = rig.picker(Rig::DiskGuard);
    picker->setFocus();
    for (const int turn : {120, -120}) {
        QWheelEvent event(picker->rect().center(), picker->mapToGlobal(picker->rect().center()), {},
                          {0, turn}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(picker, &event);
    }
    QCOMPARE(picker->currentText(), QStringLiteral("10 GB"));
    QVERIFY(!std::filesystem::exists(rig.defaults.file()));
}

void TestSettingsWindow::escapeCloses()
{
    Rig rig;
    // An open list handles the key first.
    rig.picker(Rig::AfterFull)->setFocus();
    rig.key(Qt::Key_Space);
    QAbstractItemView *list = rig.picker(Rig::AfterFull)->view();
    QVERIFY(list->isVisible());
    QTest::keyClick(list, Qt::Key_Escape);
    QTRY_VERIFY(!list->isVisible());
    QVERIFY(rig.window->isVisible());
    for (QWidget *widget : std::initializer_list<QWidget *>{
             rig.picker(Rig::AfterFull), button(*rig.window, "View"), rig.window.get()}) {
        showActive(*rig.window);
        widget->setFocus();
        rig.key(Qt::Key_Escape);
        QVERIFY(!rig.window->isVisible());
    }
}

void TestSettingsWindow::showsWhatOthersWrite()
{
    Rig rig;
    rig.writeSettings("autoStopHardCapMinutes=20160\nroundGrowthMiB=4096\n");
    QTRY_COMPARE(rig.picker(Rig::HardCap)->currentText(), QStringLiteral("2 weeks"));
    QCOMPARE(rig.picker(Rig::RoundGrowth)->currentText(), QStringLiteral("4 GB"));
    rig.writeSettings("roundGrowthMiB=512\n");
    QTRY_COMPARE(rig.picker(Rig::HardCap)->currentText(), QStringLiteral("No limit"));
    QCOMPARE(rig.picker(Rig::RoundGrowth)->currentText(), QStringLiteral("0.5 GB"));
    std::filesystem::remove(rig.defaults.file());
    QTRY_COMPARE(rig.picker(Rig::RoundGrowth)->currentText(), QStringLiteral("2 GB (recommended)"));
    // Storing a choice after that keeps what others wrote.
    rig.writeSettings("diskGuardFreeGB=50\n");
    QTRY_COMPARE(rig.picker(Rig::DiskGuard)->currentText(), QStringLiteral("50 GB"));
    QTest::keyClick(rig.picker(Rig::HardCap), Qt::Key_Down);
    QVERIFY(rig.storedSettings().contains("diskGuardFreeGB=50\n"));
}

void TestSettingsWindow::clampsStoredValues_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char *before, const char *after) {
        QTest::newRow(before) << QByteArray(before) << QByteArray(after);
    };
    row("roundGrowthMiB=100", "roundGrowthMiB=512");
    row("roundGrowthMiB=0", "roundGrowthMiB=512");
    row("roundGrowthMiB=20000", "roundGrowthMiB=16384");
    row("roundGrowthMiB=512", "roundGrowthMiB=512");
    row("roundGrowthMiB=16384", "roundGrowthMiB=16384");
    row("roundGrowthMiB=3072", "roundGrowthMiB=3072");
    row("roundGrowthMiB=x", "roundGrowthMiB=512");
    row("autoStopAfterFullMinutes=-5", "autoStopAfterFullMinutes=0");
    row("autoStopAfterFullMinutes=5", "autoStopAfterFullMinutes=5");
    row("autoStopHardCapMinutes=-1", "autoStopHardCapMinutes=0");
    row("diskGuardFreeGB=-1", "diskGuardFreeGB=-1");
    row("diskGuardFreeGB=0", "diskGuardFreeGB=0");
}

void TestSettingsWindow::clampsStoredValues()
{
    QFETCH(QByteArray, before);
    const Rig rig(before + '\n');
    QTEST(rig.storedSettings().split('\n').at(1), "after");
}

void TestSettingsWindow::clampsEachTimeItIsShown()
{
    Rig rig("autoStopAfterFullMinutes=-5\n");
    QCOMPARE(rig.picker(Rig::AfterFull)->currentText(), QStringLiteral("Never"));
    rig.window->hide();
    rig.writeSettings("autoStopAfterFullMinutes=-55\nroundGrowthMiB=99999\n");
    rig.window->show();
    QVERIFY(rig.storedSettings().contains("autoStopAfterFullMinutes=0\n"));
    QVERIFY(rig.storedSettings().contains("roundGrowthMiB=16384\n"));
    QCOMPARE(rig.picker(Rig::AfterFull)->currentText(), QStringLiteral("Never"));
    QCOMPARE(rig.picker(Rig::RoundGrowth)->currentText(), QStringLiteral("16 GB"));
}

void TestSettingsWindow::storesNothingJustByBeingShown()
{
    const Rig rig;
    QVERIFY(!std::filesystem::exists(rig.defaults.file()));
}

void TestSettingsWindow::reportsWhenNothingCanBeStored()
{
    Rig rig;
    const int height = rig.window->height();
    TextLabel *word = alarm(*rig.window);
    QVERIFY(!word->isVisible());
    // A folder in place of the file stops even root from writing.
    std::filesystem::create_directories(rig.defaults.file());
    const QString file = Files::display(rig.defaults.file());
    const auto down = [&rig, &file](bool stored) {
        if (!stored)
            QTest::ignoreMessage(QtWarningMsg,
                                 (file + QLatin1String(" cannot be written")).toUtf8().constData());
        QTest::keyClick(rig.picker(Rig::DiskGuard), Qt::Key_Down);
    };
    down(false);
    QVERIFY(word->isVisible());
    QCOMPARE(word->text(),
             QStringLiteral(
                 "The settings cannot be stored in %1. Your choices apply until Tidewick quits.")
                 .arg(file));
    QVERIFY(rig.window->height() > height);
    QCOMPARE(rig.picker(Rig::DiskGuard)->currentText(), QStringLiteral("20 GB"));
    std::filesystem::remove(rig.defaults.file());
    down(true);
    QVERIFY(!word->isVisible());
    QCOMPARE(rig.window->height(), height);
    QVERIFY(rig.storedSettings().contains("diskGuardFreeGB=50\n"));
}

void TestSettingsWindow::namesItsControls()
{
    Rig rig;
    QCOMPARE(labelOf(rig.picker(Rig::AfterFull)), QStringLiteral("Stop after being in sync for"));
    QCOMPARE(labelOf(rig.picker(Rig::HardCap)), QStringLiteral("Stop after running for"));
    QCOMPARE(labelOf(rig.picker(Rig::DiskGuard)),
             QStringLiteral("Stop if free disk space falls below"));
    QCOMPARE(labelOf(rig.picker(Rig::RoundGrowth)),
             QStringLiteral("Tidy up each time the store grows by"));
    QCOMPARE(nameOf(rig.picker(Rig::RoundGrowth)),
             QStringLiteral("Tidy up each time the store grows by"));
    QCOMPARE(nameOf(button(*rig.window, "View")), QStringLiteral("View"));
    for (TextLabel *text : rig.window->findChildren<TextLabel *>()) {
        if (text->isVisible())
            QCOMPARE(nameOf(text), text->text());
    }
}

TIDEWICK_GUI_TEST_MAIN(TestSettingsWindow)
#include "tst_settingswindow.moc"
