// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/icon/SquareStatusImage.h"

#include <QWidget>

namespace tidewick {

/// The application's mark at the head of a dialog, possibly with a badge over its corner, in the
/// colour of the headline.
class DialogMark final : public QWidget
{
    Q_OBJECT

public:
    DialogMark(SquareStatusImage image, QWidget *parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    SquareStatusImage m_image;
};

} // namespace tidewick
