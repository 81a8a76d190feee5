// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractButton>

namespace tidewick {

/// A push button in a card.
class PushButton : public QAbstractButton
{
    Q_OBJECT

public:
    PushButton(const QString &text, QWidget *parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;
};

} // namespace tidewick
