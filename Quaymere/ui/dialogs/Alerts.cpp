// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/dialogs/Alerts.h"

#include "platform/files/Bundle.h"
#include "ui/controls/PushButton.h"
#include "ui/dialogs/Dialog.h"

#include <QClipboard>
#include <QGuiApplication>

namespace tidewick {

namespace {

// In points for text of 10 points.
constexpr int questionWidth = 440;
constexpr int logWidth = 560;
constexpr int aboveConsequence = 12;

/// In characters. A longer text is shown only in a card that scrolls.
constexpr qsizetype longestText = 600;

Dialog::Message errorMessage(const QString &text, const QString &advice)
{
    const QString headline = QStringLiteral("Node error");
    const QString emptyLine = QStringLiteral("\n\n");
    const qsizetype end = text.indexOf(emptyLine);
    const QString summary = text.left(end);
    if (summary.size() > longestText || summary.contains(u'\n'))
        return {headline, {}, text, advice};
    const QString log = end < 0 ? QString() : text.sliced(end + emptyLine.size());
    return {headline, summary, log, advice};
}

void copy(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
}

/// A closed dialog lives a little longer, until it is deleted.
bool isOpen(const QPointer<Dialog> &dialog)
{
    return dialog && dialog->isVisible();
}

} // namespace

Alerts::Alerts() : m_icon(Bundle::main()) {}

Alerts::~Alerts()
{
    delete m_error;
    delete m_offer;
    delete m_question;
}

void Alerts::setScheme(Scheme scheme)
{
    m_scheme = scheme;
    for (Dialog *dialog : {m_error.data(), m_offer.data(), m_question.data()}) {
        if (dialog)
            dialog->setScheme(scheme);
    }
}

Dialog *Alerts::makeDialog(const StatusIcon::Badge &badge, int width)
{
    auto *dialog = new Dialog(m_icon.composed(badge).square, width);
    dialog->setScheme(m_scheme);
    return dialog;
}

void Alerts::showError(const QString &text, const QString &advice)
{
    m_errorText = text;
    if (!isOpen(m_error)) {
        m_error = makeDialog(StatusIcon::badge(Phase::Error), logWidth);
        const auto *button = m_error->addButtonAtStart(QStringLiteral("Copy"));
        QObject::connect(button, &PushButton::clicked, m_error, [this] { copy(m_errorText); });
        PushButton *ok = m_error->addButtonAtEnd(QStringLiteral("OK"));
        QObject::connect(ok, &PushButton::clicked, m_error, &Dialog::close);
        m_error->setDefaultButton(ok);
    }
    m_error->setMessage(errorMessage(text, advice));
    m_error->present();
}

void Alerts::offerCopy(const QString &title, const QString &text)
{
    m_offeredText = text;
    if (!isOpen(m_offer)) {
        m_offer = makeDialog(std::nullopt, logWidth);
        const auto *button = m_offer->addButtonAtEnd(QStringLiteral("Close"));
        QObject::connect(button, &PushButton::clicked, m_offer, &Dialog::close);
        PushButton *copying = m_offer->addButtonAtEnd(QStringLiteral("Copy"));
        QObject::connect(copying, &PushButton::clicked, m_offer, [this] {
            copy(m_offeredText);
            m_offer->close();
        });
        m_offer->setDefaultButton(copying);
    }
    m_offer->setMessage(
        {title,
         QStringLiteral("This desktop lets only a focused window fill the clipboard."),
         text,
         {}});
    m_offer->present();
}

void Alerts::bringQuestionForward()
{
    if (isOpen(m_question))
        m_question->present();
}

Dialog *Alerts::makeQuestion(const Confirmation &question)
{
    Dialog *dialog = makeDialog(std::nullopt, questionWidth);
    dialog->setMessage({question.title, question.text, {}, {}});
    dialog->addLine(TextLabel::Look::Path, question.path, 0);
    dialog->addLine(TextLabel::Look::Paragraph, question.consequence, aboveConsequence);
    PushButton *accept = dialog->addButtonAtEnd(question.acceptLabel);
    accept->setForegroundRole(QPalette::BrightText);
    QObject::connect(accept, &PushButton::clicked, dialog, &Dialog::accept);
    PushButton *reject = dialog->addButtonAtEnd(question.rejectLabel);
    QObject::connect(reject, &PushButton::clicked, dialog, &Dialog::close);
    dialog->setDefaultButton(reject);
    return dialog;
}

QCoro::Task<bool> Alerts::confirm(Confirmation question)
{
    Dialog *dialog = makeQuestion(question);
    m_question = dialog;
    OneShot<bool> answer;
    // These connections end with the answer, the dialog a little later. The dialog's other
    // connections must stay: Qt's accessibility learns through one of them that the dialog is gone.
    QObject asking;
    QObject::connect(dialog, &Dialog::closed, &asking,
                     [&answer](bool isAccepted) { answer.resolve(isAccepted); });
    QObject::connect(dialog, &QObject::destroyed, &asking, [this, &answer] {
        m_question.clear(); // already half destroyed
        answer.resolve(false);
    });
    dialog->present();
    co_return co_await answer;
}

} // namespace tidewick
