// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "node/NodeController.h"

#include <QPointer>

class QMessageBox;

namespace tidewick {

class ErrorAlert;

/// The alerts of the application. They run no event loop themselves, and all of their text is
/// plain. Main thread only.
class Alerts
{
public:
    Alerts();
    Alerts(const Alerts &) = delete;
    Alerts &operator=(const Alerts &) = delete;
    /// Closes all open alerts. An open question is answered with no.
    ~Alerts();

    /// Shows the text of an error, however long. If an earlier error is still open, its text is
    /// replaced.
    void showError(const QString &text);

    /// Shows a text that could not be copied without the user's help.
    void offerCopy(const QString &title, const QString &text);

    /// Asks before something that cannot be undone, one question at a time. Returns true only for
    /// the accepting button, not for Escape or for closing the alert.
    QCoro::Task<bool> confirm(Confirmation question);

    /// Shows the open question, if there is one, in front of all other windows.
    void bringQuestionForward();

private:
    QPointer<ErrorAlert> m_error;
    QPointer<QMessageBox> m_question;
};

} // namespace tidewick
