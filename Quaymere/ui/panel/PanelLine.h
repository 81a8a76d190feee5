// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QFrame>

namespace tidewick {

/// A hairline between groups of rows, as thin as the screen can draw evenly.
class PanelLine final : public QFrame
{
    Q_OBJECT

public:
    explicit PanelLine(QWidget *parent);

    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace tidewick
