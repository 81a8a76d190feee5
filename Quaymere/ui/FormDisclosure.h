// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/FormButton.h"

namespace tidewick {

/// A line that opens and closes what is below it; checked while that is open.
class FormDisclosure final : public FormButton
{
    Q_OBJECT

public:
    FormDisclosure(const QString &text, QWidget *parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
};

} // namespace tidewick
