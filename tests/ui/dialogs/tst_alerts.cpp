// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/dialogs/Alerts.h"

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>

using namespace tidewick;

class TestAlerts : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_alerts = std::make_unique<Alerts>(); }
    void cleanup() { m_alerts.reset(); }

    void errorIsShownInFull();
    void hugeErrorFitsTheScreen();
    void errorTextCanBeSelected();
    void secondErrorReplacesTheFirst();

    void questionShowsItsTexts();
    void markupIsPlainText();
    void acceptIsYes();
    void everythingElseIsNo_data();
    void everythingElseIsNo();
    void quittingIsNo();
    void accessibilityForgetsTheQuestion();

private:
    void ask(const QString &text);

    std::unique_ptr<Alerts> m_alerts;
    std::optional<bool> m_answer;
};

namespace {

template <typename Window>
Window *onlyWindow()
{
    Window *found = nullptr;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *window = qobject_cast<Window *>(widget); window && window->isVisible()) {
            if (found)
                return nullptr;
            found = window;
        }
    }
    return found;
}

QPlainTextEdit *errorText()
{
    auto *alert = onlyWindow<QDialog>();
    return alert ? alert->findChild<QPlainTextEdit *>() : nullptr;
}

QPushButton *button(const QString &text)
{
    for (QPushButton *button : onlyWindow<QMessageBox>()->findChildren<QPushButton *>()) {
        if (button->text() == text)
            return button;
    }
    return nullptr;
}

} // namespace

void TestAlerts::ask(const QString &text)
{
    m_answer.reset();
    Confirmation question;
    question.title = QStringLiteral("Clear Storage?");
    question.text = text;
    question.acceptLabel = QStringLiteral("Delete");
    question.rejectLabel = QStringLiteral("Cancel");
    [](Alerts &alerts, Confirmation asked, std::optional<bool> &answer) -> QCoro::Task<> {
        answer = co_await alerts.confirm(std::move(asked));
    }(*m_alerts, question, m_answer);
    QVERIFY(onlyWindow<QMessageBox>());
    QVERIFY(!m_answer);
}

void TestAlerts::errorIsShownInFull()
{
    const QString text = QStringLiteral("The node exited unexpectedly (exit status 3).\n\n"
                                        "<b>a</b> & b\nlast line");
    m_alerts->showError(text);
    QVERIFY(errorText());
    QCOMPARE(errorText()->toPlainText(), text);
    QCOMPARE(errorText()->verticalScrollBar()->maximum(), 0); // nothing to scroll to
    auto *ok = onlyWindow<QDialog>()->findChild<QPushButton *>();
    QVERIFY(ok->isDefault());
    QTest::keyClick(ok, Qt::Key_Return);
    QVERIFY(!onlyWindow<QDialog>());
}

void TestAlerts::hugeErrorFitsTheScreen()
{
    QString text;
    for (int line = 0; line < 3000; ++line)
        text += QString(400, u'x') + u'\n';
    m_alerts->showError(text);
    const QSize screen = onlyWindow<QDialog>()->screen()->availableSize();
    const QSize alert = onlyWindow<QDialog>()->frameSize();
    QVERIFY(alert.width() <= screen.width() && alert.height() <= screen.height());
    QVERIFY(errorText()->verticalScrollBar()->maximum() > 0);
}

void TestAlerts::errorTextCanBeSelected()
{
    m_alerts->showError(QStringLiteral("what went wrong"));
    QVERIFY(errorText()->isReadOnly());
    errorText()->setFocus();
    QTest::keyClick(errorText(), Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(errorText()->textCursor().selectedText(), QStringLiteral("what went wrong"));
    QTest::keyClick(errorText(), Qt::Key_X);
    QCOMPARE(errorText()->toPlainText(), QStringLiteral("what went wrong"));
}

void TestAlerts::secondErrorReplacesTheFirst()
{
    m_alerts->showError(QStringLiteral("one"));
    m_alerts->showError(QStringLiteral("two"));
    QVERIFY(errorText());
    QCOMPARE(errorText()->toPlainText(), QStringLiteral("two"));
}

void TestAlerts::questionShowsItsTexts()
{
    ask(QStringLiteral("This deletes 410 KB at\n/somewhere/db"));
    const auto *alert = onlyWindow<QMessageBox>();
    QCOMPARE(alert->text(), QStringLiteral("Clear Storage?"));
    QCOMPARE(alert->informativeText(), QStringLiteral("This deletes 410 KB at\n/somewhere/db"));
    QCOMPARE(alert->icon(), QMessageBox::Warning);
    QVERIFY(button(QStringLiteral("Delete")));
    QVERIFY(button(QStringLiteral("Cancel")));
    QVERIFY(button(QStringLiteral("Cancel"))->isDefault());
}

void TestAlerts::markupIsPlainText()
{
    ask(QStringLiteral("<b>a</b><img src=x>"));
    for (const QLabel *label : onlyWindow<QMessageBox>()->findChildren<QLabel *>()) {
        if (!label->text().isEmpty())
            QCOMPARE(label->textFormat(), Qt::PlainText);
    }
}

void TestAlerts::acceptIsYes()
{
    ask({});
    QTest::mouseClick(button(QStringLiteral("Delete")), Qt::LeftButton);
    QCOMPARE(m_answer, std::optional(true));
    QVERIFY(!onlyWindow<QMessageBox>());
}

void TestAlerts::everythingElseIsNo_data()
{
    QTest::addColumn<QByteArray>("how");
    for (const char *how : {"button", "escape", "return", "close"})
        QTest::newRow(how) << QByteArray(how);
}

void TestAlerts::everythingElseIsNo()
{
    QFETCH(QByteArray, how);
    ask({});
    if (how == "button")
        QTest::mouseClick(button(QStringLiteral("Cancel")), Qt::LeftButton);
    else if (how == "escape")
        QTest::keyClick(onlyWindow<QMessageBox>(), Qt::Key_Escape);
    else if (how == "return")
        QTest::keyClick(onlyWindow<QMessageBox>(), Qt::Key_Return);
    else
        onlyWindow<QMessageBox>()->close();
    QCOMPARE(m_answer, std::optional(false));
    QVERIFY(!onlyWindow<QMessageBox>());
}

void TestAlerts::quittingIsNo()
{
    ask({});
    m_alerts.reset();
    QCOMPARE(m_answer, std::optional(false));
}

/// Otherwise, the next alert could be mistaken for this one if it is allocated at the same address.
void TestAlerts::accessibilityForgetsTheQuestion()
{
    ask({});
    const QPointer<QMessageBox> alert = onlyWindow<QMessageBox>();
    const QAccessible::Id id =
        QAccessible::uniqueId(QAccessible::queryAccessibleInterface(alert.data()));
    QVERIFY(QAccessible::accessibleInterface(id));
    QTest::mouseClick(button(QStringLiteral("Delete")), Qt::LeftButton);
    QTRY_VERIFY(!alert);
    QVERIFY(!QAccessible::accessibleInterface(id));
}

TIDEWICK_GUI_TEST_MAIN(TestAlerts)
#include "tst_alerts.moc"
