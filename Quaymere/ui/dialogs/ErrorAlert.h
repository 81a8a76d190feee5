// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

class QPlainTextEdit;

namespace tidewick {

/// Shows the whole text of an error for the user to read and copy. The alert is as large as the
/// text requires and the screen allows; a longer text scrolls.
class ErrorAlert final : public QDialog
{
    Q_OBJECT

public:
    explicit ErrorAlert(QWidget *parent = nullptr);

    void setText(const QString &text);

private:
    void fitToText(const QString &text);

    QPlainTextEdit *m_text;
};

} // namespace tidewick
