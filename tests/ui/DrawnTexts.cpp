// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/DrawnTexts.h"

#include <QAbstractScrollArea>
#include <QPaintEngine>
#include <QPainterPath>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace tidewick {

namespace {

QRectF outlineOf(const QFont &font, const QString &text)
{
    QPainterPath letters;
    letters.addText(0, 0, font, text);
    return letters.boundingRect();
}

/// Measured from the glyph outlines, but as wide as the text is drawn, since hinting moves glyphs.
QRectF inkOf(const QTextItem &item)
{
    const QString last = item.text().right(1);
    const double lean =
        outlineOf(item.font(), last).right() - QFontMetricsF(item.font()).horizontalAdvance(last);
    QRectF ink = outlineOf(item.font(), item.text());
    if (!ink.isEmpty())
        ink.setRight(item.width() + lean);
    return ink;
}

/// Records texts and ignores everything else.
class TextEngine final : public QPaintEngine
{
public:
    TextEngine() : QPaintEngine(AllFeatures) {}

    const QList<DrawnText> &texts() const { return m_texts; }

    bool begin(QPaintDevice *) override { return true; }
    bool end() override { return true; }
    Type type() const override { return User; }
    void drawPixmap(const QRectF &, const QPixmap &, const QRectF &) override {}
    void drawPath(const QPainterPath &) override {}
    void drawPolygon(const QPointF *, int, PolygonDrawMode) override {}

    void updateState(const QPaintEngineState &changes) override
    {
        if (changes.state() & DirtyTransform)
            m_transform = changes.transform();
    }

    void drawTextItem(const QPointF &place, const QTextItem &item) override
    {
        const QRectF rect(place.x(), place.y() - item.ascent(), item.width(),
                          item.ascent() + item.descent());
        const QRectF ink = inkOf(item);
        const DrawnText text{item.text(), m_transform.mapRect(rect), m_transform.map(place).y(),
                             m_transform.mapRect(ink.translated(place))};
        const QFont font = plain(item.font());
        if (!m_texts.isEmpty() && font == m_font && continues(m_texts.constLast(), text)) {
            m_texts.last().text += text.text;
            m_texts.last().rect |= text.rect;
            m_texts.last().ink |= text.ink;
        } else {
            m_texts += text;
        }
        m_font = font;
    }

private:
    /// The font without what sets digits apart from the text around them.
    static QFont plain(QFont font)
    {
        font.setKerning(true);
        font.setLetterSpacing(QFont::PercentageSpacing, 100);
        return font;
    }

    /// Whether one text begins exactly where the other one ends: a layout draws figures apart.
    static bool continues(const DrawnText &before, const DrawnText &after)
    {
        constexpr double unseen = 0.01;
        return before.rect.top() == after.rect.top() && before.rect.bottom() == after.rect.bottom()
               && std::abs(before.rect.right() - after.rect.left()) < unseen;
    }

    QTransform m_transform;
    QFont m_font;
    QList<DrawnText> m_texts;
};

class TextDevice final : public QPaintDevice
{
public:
    explicit TextDevice(const QWidget &widget) : m_widget(widget) {}

    const QList<DrawnText> &texts() const { return m_engine.texts(); }

    QPaintEngine *paintEngine() const override { return &m_engine; }

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        switch (metric) {
        case PdmWidth:
            return m_widget.width();
        case PdmHeight:
            return m_widget.height();
        case PdmDepth:
            return 32;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return int(devicePixelRatioFScale());
        case PdmDpiX:
        case PdmPhysicalDpiX:
            return m_widget.logicalDpiX();
        case PdmDpiY:
        case PdmPhysicalDpiY:
            return m_widget.logicalDpiY();
        default:
            return 0;
        }
    }

private:
    const QWidget &m_widget;
    mutable TextEngine m_engine;
};

} // namespace

QList<DrawnText> drawnTexts(QWidget &widget)
{
    TextDevice device(widget);
    widget.render(&device, {}, {}, QWidget::DrawWindowBackground);
    return device.texts();
}

QStringList drawnLines(QWidget &widget)
{
    QStringList lines;
    for (const DrawnText &drawn : drawnTexts(widget))
        lines += drawn.text;
    return lines;
}

namespace {

/// Hinting moves the edges of glyphs a little.
constexpr double tolerance = 0.5;

/// Whether the text ends in an ellipsis that is not its own. It may be the last part of one that is
/// drawn in several fonts.
bool isCut(const QString &text, const QString &accessibleName)
{
    const QStringList whole{accessibleName, QStringLiteral("waiting…"),
                            QStringLiteral("Connecting…"),
                            QStringLiteral("Waiting for transactions…")};
    return text.endsWith(u'…') && std::none_of(whole.begin(), whole.end(), [&](const QString &one) {
               return one.endsWith(text);
           });
}

/// The area of a widget that its texts have to stay within. In a scroll area, texts may continue
/// beyond the lower edge.
QRectF roomIn(const QWidget &widget)
{
    constexpr int farAway = 1 << 20;
    const bool scrolls = qobject_cast<QAbstractScrollArea *>(widget.parentWidget()) != nullptr;
    return QRectF(widget.rect()).adjusted(0, 0, 0, scrolls ? farAway : 0);
}

} // namespace

QStringList textFlaws(QWidget &window)
{
    QStringList flaws;
    QList<DrawnText> all;
    for (QWidget *widget : window.findChildren<QWidget *>()) {
        if (!widget->isVisibleTo(&window))
            continue;
        const QPoint place = widget->mapTo(&window, QPoint());
        const QRectF room = roomIn(*widget).adjusted(-tolerance, -tolerance, tolerance, tolerance);
        for (const DrawnText &text : drawnTexts(*widget)) {
            if (text.ink.isEmpty())
                continue;
            if (isCut(text.text, widget->accessibleName()))
                flaws += QStringLiteral("cut: ") + text.text;
            if (!room.contains(text.ink)) {
                const QRectF &ink = text.ink;
                flaws += QStringLiteral("outside: %1, at %2…%3 × %4…%5 in %6 × %7")
                             .arg(text.text)
                             .arg(ink.left())
                             .arg(ink.right())
                             .arg(ink.top())
                             .arg(ink.bottom())
                             .arg(widget->width())
                             .arg(widget->height());
            }
            all += {text.text, text.rect.translated(place), text.baseline + place.y(),
                    (text.ink & QRectF(widget->rect())).translated(place)};
        }
    }
    for (qsizetype i = 0; i < all.size(); ++i) {
        for (qsizetype k = 0; k < i; ++k) {
            if (all[i].ink.adjusted(1, 1, -1, -1).intersects(all[k].ink))
                flaws += all[i].text + QStringLiteral(" on ") + all[k].text;
        }
    }
    return flaws;
}

} // namespace tidewick
