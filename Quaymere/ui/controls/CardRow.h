// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QHBoxLayout;

namespace tidewick {

class TextLabel;

/// A row of a card: what it is about at its beginning and at its end a control, or a value. As high
/// as what is in it; a label too long for its line goes on on the next.
class CardRow final : public QWidget
{
    Q_OBJECT

public:
    /// A control, which gets the label as the name it is told by.
    CardRow(const QString &label, QWidget *control, QWidget *parent);
    CardRow(const QString &label, TextLabel *value, QWidget *parent);

protected:
    void changeEvent(QEvent *event) override;

private:
    void fit();

    QHBoxLayout *m_layout;
    TextLabel *m_label;
};

} // namespace tidewick
