// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/dialogs/LogCard.h"

#include "ui/controls/ControlPaint.h"
#include "ui/controls/TextScale.h"

#include <QEvent>
#include <QScrollBar>
#include <QStyleOptionSlider>
#include <QTextBlock>
#include <QTextEdit>

#include <algorithm>
#include <cmath>

namespace tidewick {

namespace {

// In points for text of 10 points.
constexpr int radius = 8;
constexpr int padding = 12;
/// Keeps the scroll bars off the border and its round corners.
constexpr int borderGap = 3;
constexpr int scrollBarWidth = 9;

/// The card of a short text has room for more lines, that of a long one shows at least a few.
constexpr int usualLines = 6;
constexpr int fewestLines = 2;
/// In percent of the font's.
constexpr int lineHeight = 132;

/// Longer texts are cut off here. A text is far shorter unless something is broken.
constexpr qsizetype mostCharacters = 200'000;

/// A scroll bar without arrows and groove. The style still decides where its handle is.
class SlimScrollBar final : public QScrollBar
{
public:
    using QScrollBar::QScrollBar;

    QSize sizeHint() const override
    {
        const int across = TextScale::scaled(font(), scrollBarWidth);
        return QScrollBar::sizeHint().boundedTo(orientation() == Qt::Horizontal
                                                    ? QSize(QWIDGETSIZE_MAX, across)
                                                    : QSize(across, QWIDGETSIZE_MAX));
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        constexpr int gap = 2;
        QStyleOptionSlider option;
        initStyleOption(&option);
        const QRectF handle =
            style()
                ->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this)
                .adjusted(gap, gap, -gap, -gap);
        const double end = std::min(handle.width(), handle.height()) / 2;
        QColor color = palette().color(QPalette::PlaceholderText);
        color.setAlphaF(isSliderDown() ? 1.0F : 0.8F);
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(color);
        painter.drawRoundedRect(handle, end, end);
    }
};

} // namespace

LogCard::LogCard(QWidget *parent) : QWidget(parent), m_text(new QTextEdit(this))
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setFocusProxy(m_text);
    m_text->setAcceptRichText(false);
    m_text->setReadOnly(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_text->setTabChangesFocus(true);
    m_text->setFrameShape(QFrame::NoFrame);
    m_text->setLineWrapMode(QTextEdit::NoWrap);
    m_text->setWordWrapMode(QTextOption::NoWrap);
    m_text->setHorizontalScrollBar(new SlimScrollBar(Qt::Horizontal, m_text));
    m_text->setVerticalScrollBar(new SlimScrollBar(Qt::Vertical, m_text));
    m_text->setCornerWidget(new QWidget(m_text)); // otherwise the style fills the corner
    m_text->viewport()->setAutoFillBackground(false);
    m_text->installEventFilter(this);
    takeFont();
}

void LogCard::setText(const QString &text)
{
    // A trailing line break does not begin another line.
    const QString lines = text.endsWith(u'\n') ? text.chopped(1) : text;
    m_text->setPlainText(lines.left(mostCharacters));
    spreadLines();
    updateGeometry();
}

void LogCard::setTextName(const QString &name)
{
    m_text->setAccessibleName(name);
}

void LogCard::setHeightLimit(int limit)
{
    if (limit == m_heightLimit)
        return;
    m_heightLimit = limit;
    updateGeometry();
}

QSize LogCard::sizeHint() const
{
    const int lines = std::max(usualLines, m_text->document()->blockCount());
    const int height = std::max(heightOf(fewestLines), std::min(heightOf(lines), m_heightLimit));
    return {TextScale::scaled(font(), 2 * padding), height};
}

void LogCard::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const qreal corner = TextScale::scaled(font(), radius);
    const QRect box = contentsRect();
    ControlPaint::box(painter, box, corner, palette().color(QPalette::Base),
                      palette().color(QPalette::Mid));
    if (m_text->hasFocus() && window()->testAttribute(Qt::WA_KeyboardFocusChange))
        ControlPaint::box(painter, box, corner, Qt::transparent, palette().color(QPalette::Link));
}

void LogCard::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    // While the text had no size, it scrolled to the line with the cursor.
    m_text->verticalScrollBar()->setValue(0);
}

void LogCard::resizeEvent(QResizeEvent *)
{
    placeText();
}

void LogCard::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        takeFont();
    else if (event->type() == QEvent::ContentsRectChange)
        placeText();
}

bool LogCard::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        update();
    return QWidget::eventFilter(object, event);
}

void LogCard::takeFont()
{
    m_text->document()->setDefaultFont(TextScale::fixedWidth(font()));
    m_text->document()->setDocumentMargin(TextScale::scaled(font(), padding) - borderGap);
    placeText();
    updateGeometry();
}

void LogCard::spreadLines()
{
    QTextBlockFormat format;
    format.setLineHeight(lineHeight, QTextBlockFormat::ProportionalHeight);
    QTextCursor all(m_text->document());
    all.select(QTextCursor::Document);
    all.mergeBlockFormat(format);
}

/// The height of the card with this many lines, with room for a horizontal scroll bar.
int LogCard::heightOf(int lines) const
{
    const QFontMetricsF metrics(m_text->document()->defaultFont());
    const double text = lines * std::ceil(metrics.height() * lineHeight / 100.0);
    const int around = 2 * (TextScale::scaled(font(), padding) + borderGap)
                       + contentsMargins().top() + contentsMargins().bottom();
    // Beyond any screen, the exact height does not matter.
    return int(std::min<double>(text + around, QWIDGETSIZE_MAX));
}

void LogCard::placeText()
{
    m_text->setGeometry(contentsRect().adjusted(borderGap, borderGap, -borderGap, -borderGap));
}

} // namespace tidewick
