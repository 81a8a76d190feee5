// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "node/NodeController.h"
#include "ui/controls/Scheme.h"
#include "ui/icon/StatusIcon.h"

#include <QPointer>

namespace tidewick {

class Dialog;

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

    /// Sets the colours of open and later alerts; light ones are the default.
    void setScheme(Scheme scheme);

    /// Shows the text of an error, however long, and advice on it if there is any. The text after
    /// the first blank line is shown as a log. An earlier error that is still open is replaced.
    void showError(const QString &text, const QString &advice = {});

    /// Offers a text for copying, on desktops where only a window with the focus can copy. An
    /// earlier offer that is still open is replaced.
    void offerCopy(const QString &title, const QString &text);

    /// Asks before something that cannot be undone, one question at a time. Returns true only for
    /// the accepting button, not for Escape or for closing the alert.
    QCoro::Task<bool> confirm(Confirmation question);

    /// Shows the open question, if there is one, in front of all other windows.
    void bringQuestionForward();

private:
    Dialog *makeDialog(const StatusIcon::Badge &badge, int width);
    Dialog *makeQuestion(const Confirmation &question);

    StatusIcon m_icon;
    Scheme m_scheme;
    QString m_errorText;
    QString m_offeredText;
    QPointer<Dialog> m_error;
    QPointer<Dialog> m_offer;
    QPointer<Dialog> m_question;
};

} // namespace tidewick
