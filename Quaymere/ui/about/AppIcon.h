// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>
#include <QPixmap>
#include <QWidget>

namespace tidewick {

/// The application's icon, 64 points square, and larger beside larger texts. Icons come with empty
/// margins of varying width. These are cropped, so that the icon lines up with the texts below it.
class AppIcon final : public QWidget
{
    Q_OBJECT

public:
    explicit AppIcon(QWidget *parent);

    /// Whether the application has an icon.
    static bool isThere();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    /// Draws the visible part of the icon in the largest size that fits into a square, in pixels.
    QPixmap picture(int side) const;

    QIcon m_icon;
    /// The picture shown last, in pixels of the screen.
    QPixmap m_picture;
    int m_side = 0;
};

} // namespace tidewick
