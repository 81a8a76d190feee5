// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/icon/StatusImage.h"

#include <QWidget>

namespace tidewick {

/// The application's mark at the head of a dialog, possibly with a badge, in the colour of the
/// headline.
class DialogMark final : public QWidget
{
    Q_OBJECT

public:
    DialogMark(StatusImage image, QWidget *parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    StatusImage m_image;
};

} // namespace tidewick
