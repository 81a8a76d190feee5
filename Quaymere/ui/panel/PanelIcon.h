// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>
#include <QWidget>

namespace tidewick {

/// The status icon at the head of the node panel, in the colour of the texts, whatever its own
/// colour. It is cropped to its visible columns, because it comes centred in the room it is given.
class PanelIcon final : public QWidget
{
    Q_OBJECT

public:
    explicit PanelIcon(QWidget *parent);

    void setIcon(const QIcon &icon);

    /// The width of the visible part, at the icon height in PanelMetrics.
    int drawnWidth() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QImage drawn(qreal ratio) const;

    QIcon m_icon;
};

} // namespace tidewick
