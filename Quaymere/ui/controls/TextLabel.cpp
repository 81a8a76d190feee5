// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/TextLabel.h"

#include "ui/controls/TextScale.h"
#include "ui/controls/ToolTip.h"

#include <QEvent>
#include <QPainter>

#include <array>

namespace tidewick {

namespace {

/// In characters. Shorter lines are tiresome to read.
constexpr int readableLetters = 44;
constexpr int fewLetters = 4;

struct TextStyle
{
    QPalette::ColorRole color;
    /// Relative to the window's font.
    qreal size = 1;
    QFont::Weight weight = QFont::Normal;
    qreal lineHeight = 1;
    /// The preferred line length, in characters, of a text that normally wraps; 0 for a text that
    /// asks for a single line.
    int letters = 0;
    bool isFixedWidth = false;
};

/// In the order of TextLabel::Look.
constexpr std::array<TextStyle, 14> styles{{
    {QPalette::WindowText, 1.45, QFont::Bold},
    {QPalette::PlaceholderText, 1, QFont::Normal, 1, fewLetters},
    {QPalette::WindowText, 1.06, QFont::DemiBold},
    {QPalette::WindowText, 0.97, QFont::DemiBold},
    {QPalette::Text, 1, QFont::Normal, 1.2, readableLetters},
    {QPalette::PlaceholderText, 0.92, QFont::Normal, 1.12, fewLetters},
    {QPalette::BrightText, 0.92, QFont::Normal, 1.12, fewLetters},
    {QPalette::WindowText},
    {QPalette::PlaceholderText},
    {QPalette::WindowText, 1, QFont::Normal, 1, fewLetters},
    {QPalette::Text, 1, QFont::Normal, 1, fewLetters},
    {QPalette::WindowText, 1.12, QFont::Bold, 1, fewLetters},
    {QPalette::WindowText, 1, QFont::Normal, 1.2, fewLetters, true},
    {QPalette::WindowText, 1, QFont::Normal, 1.2, fewLetters},
}};

const TextStyle &styleOf(TextLabel::Look look)
{
    return styles.at(size_t(look));
}

} // namespace

TextLabel::TextLabel(Look look, const QString &text, QWidget *parent)
    : QLabel(parent), m_look(look), m_text(0, 0)
{
    setTextFormat(Qt::PlainText);
    setForegroundRole(styleOf(look).color);
    m_text.setLineHeight(styleOf(look).lineHeight);
    m_text.setAlignedToEnd(look == Look::Value);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    setWordWrap(true); // otherwise QLabel reports no height for width
    takeFont();
    setWholeText(text);
}

void TextLabel::setWholeText(const QString &text)
{
    if (text == this->text())
        return;
    m_text.set(text);
    setText(text);
    ToolTip::set(*this, m_text.cutText());
    updateGeometry();
    update();
}

QSize TextLabel::sizeHint() const
{
    const QFontMetrics metrics(m_text.font());
    const int letters = styleOf(m_look).letters;
    const int most = letters > 0 ? letters * metrics.averageCharWidth() : QWIDGETSIZE_MAX;
    return QSize(std::min(m_text.naturalWidth(), most), TextScale::lineHeight(m_text.font()))
        .grownBy(contentsMargins());
}

QSize TextLabel::minimumSizeHint() const
{
    const QFontMetrics metrics(m_text.font());
    return QSize(std::min(m_text.naturalWidth(), metrics.averageCharWidth() * fewLetters),
                 TextScale::lineHeight(m_text.font()))
        .grownBy(contentsMargins());
}

int TextLabel::heightForWidth(int width) const
{
    const QMargins space = contentsMargins();
    return m_text.height(width - space.left() - space.right()) + space.top() + space.bottom();
}

void TextLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    const QRect room = contentsRect();
    painter.translate(room.left(), room.top() + spaceAbove());
    m_text.draw(painter, room.width(), layoutDirection());
}

/// Texts of a row stand in its middle, with their baseline where controls have theirs.
qreal TextLabel::spaceAbove() const
{
    if (m_look != Look::Label && m_look != Look::Value)
        return 0;
    const QRect room = contentsRect();
    const int spare = room.height() - m_text.height(room.width());
    if (spare <= 0)
        return 0;
    if (m_text.lineCount(room.width()) > 1)
        return spare / 2.0;
    return TextScale::baseline(m_text.font(), room.height()) - m_text.baseline(room.width());
}

void TextLabel::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange) {
        takeFont();
        updateGeometry();
    }
    QLabel::changeEvent(event);
}

void TextLabel::takeFont()
{
    const TextStyle &style = styleOf(m_look);
    const QFont base = style.isFixedWidth ? TextScale::fixedWidth(font()) : font();
    QFont look = TextScale::resized(base, style.size);
    if (style.weight != QFont::Normal)
        look.setWeight(style.weight);
    m_text.setFont(look);
}

} // namespace tidewick
