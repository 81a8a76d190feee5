// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "node/NodeController.h"

#include <QPointer>

class QMessageBox;

namespace tidewick {

class ErrorAlert;

/// The alerts of the application. They run no event loop of their own; all texts in them are plain.
/// Main thread only.
class Alerts
{
public:
    Alerts();
    Alerts(const Alerts &) = delete;
    Alerts &operator=(const Alerts &) = delete;
    /// Closes what is open; a question is answered with no.
    ~Alerts();

    /// Shows the text of an error, however long, in place of the one shown before if that is open
    /// still.
    void showError(const QString &text);

    /// Asks before something that cannot be undone, one question at a time. True only for the
    /// button that says so, not for Escape, nor for closing the alert.
    QCoro::Task<bool> confirm(Confirmation question);

    /// Shows the open question, if there is one, in front of all other windows.
    void bringQuestionForward();

private:
    QPointer<ErrorAlert> m_error;
    QPointer<QMessageBox> m_question;
};

} // namespace tidewick
