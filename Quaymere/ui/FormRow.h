// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QHBoxLayout;

namespace tidewick {

class FormText;

/// A row of a card: what it is about at its beginning and at its end a control, or a value. As high
/// as what is in it; a label too long for its line goes on on the next.
class FormRow final : public QWidget
{
    Q_OBJECT

public:
    /// A control, which gets the label as the name it is told by.
    FormRow(const QString &label, QWidget *control, QWidget *parent);
    FormRow(const QString &label, FormText *value, QWidget *parent);

protected:
    void changeEvent(QEvent *event) override;

private:
    void fit();

    QHBoxLayout *m_layout;
    FormText *m_label;
};

} // namespace tidewick
