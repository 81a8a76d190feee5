// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/controls/Button.h"

namespace tidewick {

/// A push button in a card or dialog, with its text in the colour of its foreground role.
class PushButton : public Button
{
    Q_OBJECT

public:
    PushButton(const QString &text, QWidget *parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;
};

} // namespace tidewick
