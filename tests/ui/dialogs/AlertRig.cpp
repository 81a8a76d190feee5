// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/dialogs/AlertRig.h"

#include "ui/FormRig.h"

#include <QApplication>
#include <QTextEdit>

namespace tidewick {

void AlertRig::ask(const Confirmation &question)
{
    answer.reset();
    [](Alerts &asked, Confirmation about, std::optional<bool> &given) -> QCoro::Task<> {
        given = co_await asked.confirm(std::move(about));
    }(*m_alerts, question, answer);
    if (answer || !shownAlert())
        qFatal("The question is not open");
    showActive(*shownAlert());
}

Confirmation AlertRig::usualQuestion()
{
    Confirmation question;
    question.title = QStringLiteral("Clear Storage?");
    question.text = QStringLiteral("This deletes 410 KB at");
    question.path = QStringLiteral("/somewhere/db");
    question.consequence = QStringLiteral("The next Start downloads the ledger again.");
    question.acceptLabel = QStringLiteral("Delete");
    question.rejectLabel = QStringLiteral("Cancel");
    return question;
}

CardWindow *shownAlert()
{
    CardWindow *found = nullptr;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        auto *window = qobject_cast<CardWindow *>(widget);
        if (!window || !window->isVisible())
            continue;
        if (found)
            qFatal("There is more than one alert");
        found = window;
    }
    return found;
}

QStringList alertTexts()
{
    QCoreApplication::processEvents(); // lays out texts that have changed
    return shownTexts(*shownAlert());
}

QTextEdit *alertLog()
{
    auto *log = shownAlert()->findChild<QTextEdit *>();
    return log && log->isVisible() ? log : nullptr;
}

} // namespace tidewick
