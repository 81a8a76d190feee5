// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/controls/CardWindow.h"
#include "ui/dialogs/Alerts.h"

#include <memory>
#include <optional>

class QTextEdit;

namespace tidewick {

/// The alerts, and the user's answer to the last question.
class AlertRig
{
public:
    AlertRig() : m_alerts(std::make_unique<Alerts>()), alerts(*m_alerts) {}

    /// Asks a question, which has to be open and unanswered afterwards.
    void ask(const Confirmation &question = usualQuestion());

    /// Destroys the alerts.
    void end() { m_alerts.reset(); }

    static Confirmation usualQuestion();

private:
    std::unique_ptr<Alerts> m_alerts;

public:
    Alerts &alerts;
    std::optional<bool> answer;
};

/// The alert on the screen, or null. Aborts the test if there are several.
CardWindow *shownAlert();

/// Its texts, from top to bottom, without the log.
QStringList alertTexts();

/// Its log, or null if it shows none.
QTextEdit *alertLog();

} // namespace tidewick
