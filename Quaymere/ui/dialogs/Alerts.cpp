// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/dialogs/Alerts.h"

#include "ui/controls/BringForward.h"
#include "ui/dialogs/ErrorAlert.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

namespace tidewick {

Alerts::Alerts() = default;

Alerts::~Alerts()
{
    delete m_error;
    delete m_question;
}

void Alerts::showError(const QString &text)
{
    // An alert that has just been closed is about to be deleted.
    if (!m_error || !m_error->isVisible())
        m_error = new ErrorAlert;
    m_error->setText(text);
    bringForward(*m_error);
}

void Alerts::offerCopy(const QString &title, const QString &text)
{
    showError(title + text);
}

void Alerts::bringQuestionForward()
{
    if (m_question && m_question->isVisible())
        bringForward(*m_question);
}

QCoro::Task<bool> Alerts::confirm(Confirmation question)
{
    auto *alert = new QMessageBox;
    m_question = alert;
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->setIcon(QMessageBox::Warning);
    alert->setWindowTitle(QStringLiteral("Tidewick"));
    alert->setTextFormat(Qt::PlainText);
    alert->setText(question.title);
    alert->setInformativeText(question.text);
    // The format set above applies only to the main text, and a path may well look like markup.
    if (auto *informative =
            alert->findChild<QLabel *>(QStringLiteral("qt_msgbox_informativelabel")))
        informative->setTextFormat(Qt::PlainText);
    const auto *accept = alert->addButton(question.acceptLabel, QMessageBox::DestructiveRole);
    auto *reject = alert->addButton(question.rejectLabel, QMessageBox::RejectRole);
    alert->setDefaultButton(reject);
    alert->setEscapeButton(reject);

    OneShot<bool> answer;
    // These connections end with the answer, the alert a little later. The alert's other
    // connections must stay: Qt's accessibility learns through one of them that the alert is gone.
    QObject asking;
    QObject::connect(alert, &QDialog::finished, &asking, [&answer, alert, accept] {
        answer.resolve(alert->clickedButton() == accept);
    });
    QObject::connect(alert, &QObject::destroyed, &asking, [this, &answer] {
        m_question.clear(); // already half destroyed
        answer.resolve(false);
    });
    bringForward(*alert);
    co_return co_await answer;
}

} // namespace tidewick
