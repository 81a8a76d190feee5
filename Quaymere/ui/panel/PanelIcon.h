// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>
#include <QWidget>

namespace tidewick {

/// The status icon at the head of the node panel, in the colour of the texts whatever its own is,
/// as small as what is drawn of it: icons for trays come centred in a square.
class PanelIcon final : public QWidget
{
    Q_OBJECT

public:
    explicit PanelIcon(QWidget *parent);

    void setIcon(const QIcon &icon);

    /// The drawn part's width, at the icon height of the panel's metrics.
    int drawnWidth() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QImage drawn(qreal ratio) const;

    QIcon m_icon;
};

} // namespace tidewick
