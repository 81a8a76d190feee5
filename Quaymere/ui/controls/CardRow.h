// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QHBoxLayout;

namespace tidewick {

class TextLabel;

/// A row of a card: a label at its beginning and a control or a value at its end. It is as high as
/// its content; a label too long for one line wraps.
class CardRow final : public QWidget
{
    Q_OBJECT

public:
    /// A row with a control, which takes the label as its accessible name.
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
