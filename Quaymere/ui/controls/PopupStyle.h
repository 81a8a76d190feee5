// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QCommonStyle>
#include <QPointer>
#include <QWidget>

class QStyleOptionMenuItem;

namespace tidewick {

/// Measures and paints popups; see Popups.h. It does not depend on the application's style. A
/// menu's separators are hairlines. Its icons, check marks and submenus are not shown, because no
/// menu of this application has any. The keyboard also reaches the rows that cannot be chosen, so
/// that screen readers read them.
class PopupStyle : public QCommonStyle
{
    Q_OBJECT

public:
    /// Takes the colours from this widget, or from the popup itself if there is none.
    explicit PopupStyle(const QWidget *colors);

    /// The space between the edge of a popup and its rows, in pixels at device pixel ratio 1.
    static int inset(const QFont &font);
    /// Between the edge of a tooltip and its text, at both sides, beyond the space all around.
    static int toolTipSidePadding(const QFont &font);

    /// Paints the background of the row under the cursor, inside of its rectangle.
    static void paintCurrentRow(QPainter &painter, const QRectF &row, const QFont &font,
                                const QPalette &colors);

    int pixelMetric(PixelMetric metric, const QStyleOption *option,
                    const QWidget *widget) const override;
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returned) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                           const QWidget *widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;

private:
    QPalette colors(const QStyleOption &option) const;
    void drawPanel(QPainter &painter, const QStyleOption &option, int radius) const;
    static void drawRow(QPainter &painter, const QStyleOptionMenuItem &row);
    void drawScroller(QPainter &painter, const QStyleOption &option) const;

    QPointer<const QWidget> m_colors;
};

} // namespace tidewick
