// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>
#include <QWidget>

namespace tidewick {

/// The icon that the application is to have: the one that is installed with the desktop's icons,
/// else the one that the bundle carries.
QIcon applicationIcon();

/// The application's icon, 64 points square. Icons come with empty space around them, each with as
/// much as it likes; that is left away, so that the icon begins where the texts below it begin.
class AppIcon final : public QWidget
{
    Q_OBJECT

public:
    explicit AppIcon(QWidget *parent);

    /// Whether the application has one.
    static bool isThere();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QIcon m_icon;
    /// The whole icon, where what is drawn of it fills this widget.
    QRect m_place;
};

} // namespace tidewick
