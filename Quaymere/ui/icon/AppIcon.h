// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>
#include <QWidget>

namespace tidewick {

/// Returns the application's icon: the one installed with the desktop's icons, or else the one in
/// the bundle.
QIcon applicationIcon();

/// The application's icon, 64 points square. Icons come with empty margins of varying width. These
/// are cropped, so that the icon lines up with the texts below it.
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
    QIcon m_icon;
    /// The rectangle for the whole icon that makes its visible part fill this widget.
    QRect m_place;
};

} // namespace tidewick
