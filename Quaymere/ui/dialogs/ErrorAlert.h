// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

class QPlainTextEdit;

namespace tidewick {

/// Shows an error's whole text: as large as the text asks for and the screen allows, scrolling
/// beyond that, for the user to read and copy.
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
