// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractButton>

namespace tidewick {

/// The base of all buttons. Return and Enter click it, too, but only once while they are held down.
class Button : public QAbstractButton
{
    Q_OBJECT

protected:
    explicit Button(QWidget *parent);

    void keyPressEvent(QKeyEvent *event) override;
};

} // namespace tidewick
