// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/PopupStyle.h"

#include "ui/controls/Compositing.h"
#include "ui/controls/ControlMetrics.h"
#include "ui/controls/ControlPaint.h"
#include "ui/controls/ControlPalette.h"
#include "ui/controls/DevicePixels.h"
#include "ui/controls/Popups.h"
#include "ui/controls/TextScale.h"

#include <QStyleOptionMenuItem>

namespace tidewick {

namespace {

// In points for text of 10 points.
constexpr int insetOfRows = 5;
constexpr int rowPadding = 10;
constexpr int aboveRowText = 4;
constexpr int aboveSeparator = 4;
constexpr int beforeShortcut = 24;
constexpr int toolTipRadius = 8;
constexpr int toolTipPadding = 6;
constexpr int toolTipSide = 3;
constexpr int scrollerHeight = 16;

bool isSeparator(const QStyleOptionMenuItem &row)
{
    return row.menuItemType == QStyleOptionMenuItem::Separator;
}

QFont fontOf(const QStyleOption *option, const QWidget *widget)
{
    if (const auto *row = qstyleoption_cast<const QStyleOptionMenuItem *>(option))
        return row->font;
    return widget ? widget->font() : QFont();
}

} // namespace

PopupStyle::PopupStyle(const QWidget *colors) : m_colors(colors) {}

int PopupStyle::inset(const QFont &font)
{
    return TextScale::scaled(font, insetOfRows);
}

int PopupStyle::toolTipSidePadding(const QFont &font)
{
    return TextScale::scaled(font, toolTipSide);
}

void PopupStyle::paintCurrentRow(QPainter &painter, const QRectF &row, const QFont &font,
                                 const QPalette &colors)
{
    ControlPaint::box(painter, row, TextScale::scaled(font, ControlMetrics::controlRadius),
                      Popups::currentRow(colors),
                      hasHighContrast(colors) ? colors.color(QPalette::Link) : Qt::transparent);
}

int PopupStyle::pixelMetric(PixelMetric metric, const QStyleOption *option,
                            const QWidget *widget) const
{
    const QFont font = widget ? widget->font() : QFont();
    switch (metric) {
    case PM_MenuHMargin:
    case PM_MenuVMargin:
        return inset(font);
    case PM_MenuPanelWidth:
    case PM_DefaultFrameWidth:
        return 0;
    case PM_MenuScrollerHeight:
        return TextScale::scaled(font, scrollerHeight);
    case PM_ToolTipLabelFrameWidth:
        return TextScale::scaled(font, toolTipPadding);
    default:
        return QCommonStyle::pixelMetric(metric, option, widget);
    }
}

int PopupStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                          QStyleHintReturn *returned) const
{
    switch (hint) {
    case SH_ComboBox_Popup:
    case SH_ComboBox_ListMouseTracking:
    case SH_Menu_MouseTracking:
    case SH_Menu_Scrollable:
    case SH_Menu_AllowActiveAndDisabled:
        return 1;
    case SH_ComboBox_PopupFrameStyle:
        return QFrame::NoFrame;
    case SH_ToolTip_Mask:
    case SH_Menu_Mask:
        return 0;
    default:
        return QCommonStyle::styleHint(hint, option, widget, returned);
    }
}

QSize PopupStyle::sizeFromContents(ContentsType type, const QStyleOption *option,
                                   const QSize &contents, const QWidget *widget) const
{
    const auto *row = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
    if (type != CT_MenuItem || !row)
        return QCommonStyle::sizeFromContents(type, option, contents, widget);
    const auto scaled = [&](int points) {
        return TextScale::scaled(fontOf(option, widget), points);
    };
    if (isSeparator(*row))
        return {1, 2 * scaled(aboveSeparator) + 1}; // a row without a width would not be shown
    const int gap = row->text.contains(u'\t') ? scaled(beforeShortcut) : 0;
    return {contents.width() + gap + 2 * scaled(rowPadding),
            TextScale::lineHeight(row->font) + 2 * scaled(aboveRowText)};
}

void PopupStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                               QPainter *painter, const QWidget *widget) const
{
    switch (element) {
    case PE_PanelMenu:
        return drawPanel(*painter, *option,
                         TextScale::scaled(fontOf(option, widget), ControlMetrics::cardRadius));
    case PE_PanelTipLabel:
        return drawPanel(*painter, *option,
                         TextScale::scaled(fontOf(option, widget), toolTipRadius));
    case PE_FrameMenu:
        return; // part of the panel
    default:
        QCommonStyle::drawPrimitive(element, option, painter, widget);
    }
}

void PopupStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                             const QWidget *widget) const
{
    const auto *row = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
    switch (element) {
    case CE_MenuItem:
        if (row)
            drawRow(*painter, *row);
        return;
    case CE_MenuScroller:
        return drawScroller(*painter, *option);
    case CE_MenuEmptyArea:
    case CE_MenuHMargin:
    case CE_MenuVMargin:
        return; // part of the panel
    default:
        QCommonStyle::drawControl(element, option, painter, widget);
    }
}

QPalette PopupStyle::colors(const QStyleOption &option) const
{
    return m_colors ? m_colors->palette() : option.palette;
}

void PopupStyle::drawPanel(QPainter &painter, const QStyleOption &option, int radius) const
{
    const QPalette palette = colors(option);
    ControlPaint::box(painter, option.rect, Compositing::isOn() ? radius : 0,
                      Popups::ground(palette), palette.color(QPalette::Dark));
}

void PopupStyle::drawRow(QPainter &painter, const QStyleOptionMenuItem &row)
{
    const QPalette &colors = row.palette;
    const int padding = TextScale::scaled(row.font, rowPadding);
    const QRect inside = row.rect.adjusted(padding, 0, -padding, 0);
    if (isSeparator(row)) {
        const qreal line = DevicePixels::hairline(painter);
        const QRectF place(inside.left(), inside.center().y(), inside.width(), line);
        painter.fillRect(DevicePixels::snapped(painter, place), colors.color(QPalette::Mid));
        return;
    }
    const bool isEnabled = row.state.testFlag(State_Enabled);
    if (row.state.testFlag(State_Selected)) {
        if (isEnabled)
            paintCurrentRow(painter, row.rect, row.font, colors);
        else // for reading, not for choosing
            ControlPaint::box(painter, row.rect,
                              TextScale::scaled(row.font, ControlMetrics::controlRadius),
                              Qt::transparent, colors.color(QPalette::Dark));
    }
    const QString text = row.text.section(u'\t', 0, 0);
    const QString shortcut = row.text.section(u'\t', 1);
    const int flags =
        Qt::AlignVCenter | Qt::AlignAbsolute | Qt::TextSingleLine | Qt::TextShowMnemonic;
    const auto alignment = [&](Qt::Alignment wanted) {
        return flags | int(visualAlignment(row.direction, wanted) & Qt::AlignHorizontal_Mask);
    };
    const QPalette::ColorGroup group = isEnabled ? QPalette::Active : QPalette::Disabled;
    painter.save();
    // In the reading direction of the text itself: its "…" stays behind it.
    painter.setLayoutDirection(Qt::LayoutDirectionAuto);
    painter.setFont(row.font);
    painter.setPen(colors.color(group, QPalette::ButtonText));
    painter.drawText(inside, alignment(Qt::AlignLeft), text);
    painter.setPen(colors.color(group, QPalette::PlaceholderText));
    painter.drawText(inside, alignment(Qt::AlignRight), shortcut);
    painter.restore();
}

void PopupStyle::drawScroller(QPainter &painter, const QStyleOption &option) const
{
    const qreal size = option.rect.height() / 4.0;
    const QPointF middle = QRectF(option.rect).center();
    const qreal down = option.state.testFlag(State_DownArrow) ? size / 2 : -size / 2;
    ControlPaint::arrow(painter, middle + QPointF(0, down), middle - QPointF(size, down),
                        middle + QPointF(size, -down),
                        colors(option).color(QPalette::PlaceholderText), size / 2.5);
}

} // namespace tidewick
