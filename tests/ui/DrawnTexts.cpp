// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "DrawnTexts.h"

#include <QPaintEngine>
#include <QWidget>

namespace tidewick {

namespace {

/// Takes note of texts and lets everything else go.
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
        m_texts += {item.text(), m_transform.mapRect(rect)};
    }

private:
    QTransform m_transform;
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

} // namespace tidewick
