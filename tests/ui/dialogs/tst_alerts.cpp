// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/FormRig.h"
#include "ui/dialogs/AlertRig.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QPointer>
#include <QScrollBar>
#include <QTextEdit>

using namespace tidewick;

/// What the alerts say, and what becomes of the user's answers.
class TestAlerts : public QObject
{
    Q_OBJECT

private slots:
    void errorIsShownInFull();
    void errorWithoutALog();
    void longErrorIsALog();
    void errorHasAdviceIfThereIsSome();
    void errorTextCanBeSelected();
    void errorCanBeCopied();
    void secondErrorReplacesTheFirst();
    void errorCloses_data() { addWaysToClose(); }
    void errorCloses();

    void questionShowsItsTexts();
    void acceptIsYes_data();
    void acceptIsYes();
    void everythingElseIsNo_data() { addWaysToClose(); }
    void everythingElseIsNo();
    void heldReturnIsNoAnswer();
    void quittingIsNo();
    void questionComesForward();

    void offersATextToCopy();
    void offerCloses_data() { addWaysToClose(); }
    void offerCloses();
    void secondOfferReplacesTheFirst();

    void markupIsPlainText();
    void tellsScreenReaders();
    void accessibilityForgetsTheQuestion();

private:
    static void addWaysToClose();
    static void closeAlert(const char *buttonText);
};

namespace {

const QString logText =
    QStringLiteral("<b>a</b> & b\n  a line that is "
                   "far too long for the width of the alert, and does not wrap, "
                   "so that columns stay below each other\nlast line");
const QString error = QStringLiteral("The node exited unexpectedly (exit status 3).\n\n") + logText;

/// Sends a key to the alert's window, as the window system does.
void press(Qt::Key key)
{
    showActive(*shownAlert());
    QTest::keyClick(shownAlert()->windowHandle(), key);
}

} // namespace

void TestAlerts::addWaysToClose()
{
    QTest::addColumn<QByteArray>("how");
    for (const char *how : {"button", "Escape", "Return", "Return in the text", "close"})
        QTest::newRow(how) << QByteArray(how);
}

/// Closes the shown alert in the row's way: with this button, for example.
void TestAlerts::closeAlert(const char *buttonText)
{
    QFETCH(QByteArray, how);
    CardWindow *alert = shownAlert();
    if (how == "button") {
        QTest::mouseClick(button(*alert, buttonText), Qt::LeftButton);
    } else if (how == "Escape") {
        press(Qt::Key_Escape);
    } else if (how == "Return") {
        press(Qt::Key_Return);
    } else if (how == "Return in the text") {
        if (auto *text = alert->findChild<QTextEdit *>(); text && text->isVisible())
            text->setFocus();
        else
            alert->focusWidget()->clearFocus();
        press(Qt::Key_Enter);
    } else {
        alert->close();
    }
}

void TestAlerts::errorIsShownInFull()
{
    AlertRig rig;
    rig.alerts.showError(error);
    QCOMPARE(shownAlert()->windowTitle(), QStringLiteral("Tidewick"));
    QCOMPARE(alertTexts(),
             QStringList({QStringLiteral("Node error"),
                          QStringLiteral("The node exited unexpectedly (exit status 3).")}));
    QVERIFY(alertLog());
    QCOMPARE(alertLog()->toPlainText(), logText);
    QCOMPARE(alertLog()->document()->size().toSize().width(),
             alertLog()->viewport()->width() + alertLog()->horizontalScrollBar()->maximum());
    QVERIFY(alertLog()->horizontalScrollBar()->maximum() > 0);
    QCOMPARE(alertLog()->verticalScrollBar()->maximum(), 0);
    QCOMPARE(shownAlert()->focusWidget(), button(*shownAlert(), "OK"));
}

void TestAlerts::errorWithoutALog()
{
    AlertRig rig;
    rig.alerts.showError(error);
    const int height = shownAlert()->height();
    rig.alerts.showError(QStringLiteral("The store is in use."));
    QCOMPARE(alertTexts(),
             QStringList({QStringLiteral("Node error"), QStringLiteral("The store is in use.")}));
    QVERIFY(!alertLog());
    QTRY_VERIFY(shownAlert()->height() < height - 100);
}

void TestAlerts::longErrorIsALog()
{
    AlertRig rig;
    for (const QString &text : {QString(5000, u'x'), QStringLiteral("one line\nanother\n\nmore")}) {
        rig.alerts.showError(text);
        QCOMPARE(alertTexts(), QStringList{QStringLiteral("Node error")});
        QCOMPARE(alertLog()->toPlainText(), text);
    }
}

void TestAlerts::errorHasAdviceIfThereIsSome()
{
    AlertRig rig;
    const QString advice = QStringLiteral("“Clear Storage…” repairs it.");
    rig.alerts.showError(error, advice);
    QCOMPARE(alertTexts().value(2), advice);
    rig.alerts.showError(error);
    QCOMPARE(alertTexts().size(), 2);
}

void TestAlerts::errorTextCanBeSelected()
{
    AlertRig rig;
    rig.alerts.showError(QStringLiteral("why\n\nwhat went wrong"));
    QVERIFY(alertLog()->isReadOnly());
    QTest::keyClick(shownAlert()->focusWidget(), Qt::Key_Tab, Qt::ShiftModifier);
    QTest::keyClick(shownAlert()->focusWidget(), Qt::Key_Tab, Qt::ShiftModifier);
    QCOMPARE(shownAlert()->focusWidget(), alertLog());
    QTest::keyClick(alertLog(), Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(alertLog()->textCursor().selectedText(), QStringLiteral("what went wrong"));
    QTest::keyClick(alertLog(), Qt::Key_X);
    QCOMPARE(alertLog()->toPlainText(), QStringLiteral("what went wrong"));
}

void TestAlerts::errorCanBeCopied()
{
    AlertRig rig;
    rig.alerts.showError(error);
    QTest::mouseClick(button(*shownAlert(), "Copy"), Qt::LeftButton);
    QCOMPARE(QApplication::clipboard()->text(), error);
    QVERIFY(shownAlert());
    rig.alerts.showError(QStringLiteral("another"));
    QTest::mouseClick(button(*shownAlert(), "Copy"), Qt::LeftButton);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("another"));
}

void TestAlerts::secondErrorReplacesTheFirst()
{
    AlertRig rig;
    rig.alerts.showError(QStringLiteral("one\n\none more"));
    rig.alerts.showError(QStringLiteral("two\n\ntwo more"));
    QCOMPARE(alertTexts().value(1), QStringLiteral("two"));
    QCOMPARE(alertLog()->toPlainText(), QStringLiteral("two more"));
}

void TestAlerts::errorCloses()
{
    AlertRig rig;
    rig.alerts.showError(error);
    closeAlert("OK");
    QVERIFY(!shownAlert());
    rig.alerts.showError(error);
    QVERIFY(shownAlert());
}

void TestAlerts::questionShowsItsTexts()
{
    AlertRig rig;
    rig.ask();
    QCOMPARE(shownAlert()->windowTitle(), QStringLiteral("Tidewick"));
    QCOMPARE(alertTexts(),
             QStringList({QStringLiteral("Clear Storage?"),
                          QStringLiteral("This deletes 410 KB at"), QStringLiteral("/somewhere/db"),
                          QStringLiteral("The next Start downloads the ledger again.")}));
    QCOMPARE(shownAlert()->focusWidget(), button(*shownAlert(), "Cancel"));
    QVERIFY(!alertLog());
}

void TestAlerts::acceptIsYes_data()
{
    QTest::addColumn<bool>("byKeyboard");
    QTest::newRow("mouse") << false;
    QTest::newRow("keyboard") << true;
}

void TestAlerts::acceptIsYes()
{
    QFETCH(bool, byKeyboard);
    AlertRig rig;
    rig.ask();
    if (byKeyboard) {
        button(*shownAlert(), "Delete")->setFocus(Qt::TabFocusReason);
        press(Qt::Key_Return);
    } else {
        QTest::mouseClick(button(*shownAlert(), "Delete"), Qt::LeftButton);
    }
    QCOMPARE(rig.answer, std::optional(true));
    QVERIFY(!shownAlert());
}

void TestAlerts::everythingElseIsNo()
{
    AlertRig rig;
    rig.ask();
    closeAlert("Cancel");
    QCOMPARE(rig.answer, std::optional(false));
    QVERIFY(!shownAlert());
}

/// A Return that chose the command may still be held down when the question appears.
void TestAlerts::heldReturnIsNoAnswer()
{
    AlertRig rig;
    rig.ask();
    for (const bool isOnButton : {true, false}) {
        if (!isOnButton)
            shownAlert()->focusWidget()->clearFocus();
        QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, {}, true);
        QApplication::sendEvent(shownAlert()->windowHandle(), &repeated);
        QVERIFY(!rig.answer);
    }
}

void TestAlerts::quittingIsNo()
{
    std::optional<bool> answer;
    {
        AlertRig rig;
        rig.ask();
        rig.end();
        answer = rig.answer;
    }
    QCOMPARE(answer, std::optional(false));
}

void TestAlerts::questionComesForward()
{
    AlertRig rig;
    rig.alerts.bringQuestionForward();
    QVERIFY(!shownAlert());
    rig.ask();
    QWidget other;
    showActive(other);
    shownAlert()->setWindowState(Qt::WindowMinimized);
    rig.alerts.bringQuestionForward();
    QVERIFY(!shownAlert()->isMinimized());
    QTRY_VERIFY(shownAlert()->isActiveWindow());
    press(Qt::Key_Escape);
    rig.alerts.bringQuestionForward();
    QVERIFY(!shownAlert());
}

void TestAlerts::offersATextToCopy()
{
    AlertRig rig;
    const QString text = QStringLiteral("{\n  \"peers\" : 7\n}\n");
    rig.alerts.offerCopy(QStringLiteral("server_info"), text);
    QCOMPARE(alertTexts(),
             QStringList(
                 {QStringLiteral("server_info"),
                  QStringLiteral("This desktop lets only a focused window fill the clipboard.")}));
    QCOMPARE(alertLog()->toPlainText(), text.chopped(1));
    QCOMPARE(shownAlert()->focusWidget(), button(*shownAlert(), "Copy"));
    QApplication::clipboard()->clear();
    press(Qt::Key_Return);
    QCOMPARE(QApplication::clipboard()->text(), text);
    QVERIFY(!shownAlert());
}

void TestAlerts::offerCloses()
{
    QFETCH(QByteArray, how);
    AlertRig rig;
    QApplication::clipboard()->setText(QStringLiteral("the user's own"));
    rig.alerts.offerCopy(QStringLiteral("server_info"), QStringLiteral("a\nb"));
    closeAlert("Close");
    QVERIFY(!shownAlert());
    QCOMPARE(QApplication::clipboard()->text(),
             how.startsWith("Return") ? QStringLiteral("a\nb") : QStringLiteral("the user's own"));
}

void TestAlerts::secondOfferReplacesTheFirst()
{
    AlertRig rig;
    rig.alerts.offerCopy(QStringLiteral("one"), QStringLiteral("text of one"));
    rig.alerts.offerCopy(QStringLiteral("two"), QStringLiteral("text of two"));
    QCOMPARE(alertTexts().value(0), QStringLiteral("two"));
    press(Qt::Key_Return);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("text of two"));
}

void TestAlerts::markupIsPlainText()
{
    const QString markup = QStringLiteral("<b>a</b><img src=x>");
    AlertRig rig;
    rig.ask({markup, markup, markup, markup, markup, QStringLiteral("Cancel")});
    QCOMPARE(alertTexts().count(markup), 4);
    for (const QLabel *label : shownAlert()->findChildren<QLabel *>())
        QCOMPARE(label->textFormat(), Qt::PlainText);
    press(Qt::Key_Escape);
    rig.alerts.showError(markup + QStringLiteral("\n\n") + markup, markup);
    QCOMPARE(alertTexts().count(markup), 2);
    QCOMPARE(alertLog()->toPlainText(), markup);
}

void TestAlerts::tellsScreenReaders()
{
    AlertRig rig;
    rig.alerts.showError(error, QStringLiteral("Advice."));
    showActive(*shownAlert());
    QAccessibleInterface *alert = QAccessible::queryAccessibleInterface(shownAlert());
    QCOMPARE(alert->role(), QAccessible::Dialog);
    QCOMPARE(alert->text(QAccessible::Name), QStringLiteral("Node error"));
    QCOMPARE(alert->text(QAccessible::Description),
             QStringLiteral("The node exited unexpectedly (exit status 3). Advice."));
    const auto *ok = QAccessible::queryAccessibleInterface(button(*shownAlert(), "OK"));
    QCOMPARE(ok->text(QAccessible::Name), QStringLiteral("OK"));
    QCOMPARE(ok->role(), QAccessible::Button);
    QVERIFY(ok->state().focused);
    const auto *text = QAccessible::queryAccessibleInterface(alertLog());
    QCOMPARE(text->text(QAccessible::Name), QStringLiteral("Node error"));
    QVERIFY(text->state().readOnly && text->state().focusable);
}

/// Otherwise, the next alert could be mistaken for this one if it is allocated at the same address.
void TestAlerts::accessibilityForgetsTheQuestion()
{
    AlertRig rig;
    rig.ask();
    const QPointer<CardWindow> alert = shownAlert();
    const QAccessible::Id id =
        QAccessible::uniqueId(QAccessible::queryAccessibleInterface(alert.data()));
    QVERIFY(QAccessible::accessibleInterface(id));
    QTest::mouseClick(button(*alert, "Delete"), Qt::LeftButton);
    QTRY_VERIFY(!alert);
    QVERIFY(!QAccessible::accessibleInterface(id));
}

TIDEWICK_GUI_TEST_MAIN(TestAlerts)
#include "tst_alerts.moc"
