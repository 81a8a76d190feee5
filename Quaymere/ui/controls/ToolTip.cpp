// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/ToolTip.h"

#include "platform/text/DisplayText.h"
#include "ui/controls/ControlPalette.h"
#include "ui/controls/Popups.h"
#include "ui/controls/TextScale.h"

#include <QFontMetricsF>
#include <QStringList>
#include <QTextLayout>
#include <QToolTip>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace tidewick::ToolTip {

namespace {

/// A tooltip that fills the screen is of no use.
constexpr qsizetype mostCharacters = 4000;
constexpr qsizetype mostLines = 40;

// In points for text of 10 points.
constexpr int readableWidth = 310;
constexpr int mostWidth = 640;

qreal longestWord(const QString &line, const QFontMetricsF &metrics)
{
    qreal longest = 0;
    for (const QString &word : line.split(u' '))
        longest = std::max(longest, metrics.horizontalAdvance(word));
    return longest;
}

/// The line, broken into as many as it needs. Qt would choose a width by itself, which breaks short
/// texts and makes long ones square.
QStringList broken(const QString &line, const QFont &font)
{
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    QTextLayout layout(line, font);
    layout.setTextOption(option);
    const qreal width = std::clamp<qreal>(std::ceil(longestWord(line, QFontMetricsF(font))),
                                          TextScale::scaled(font, readableWidth),
                                          TextScale::scaled(font, mostWidth));
    QStringList lines;
    layout.beginLayout();
    for (QTextLine part = layout.createLine(); part.isValid(); part = layout.createLine()) {
        part.setLineWidth(width);
        lines += line.mid(part.textStart(), part.textLength());
    }
    layout.endLayout();
    return lines.isEmpty() ? QStringList{QString()} : lines;
}

/// The lines of a text as markup, each of them broken and escaped.
QStringList linesOf(const QString &text, const QFont &font)
{
    QStringList lines;
    for (const QString &line : DisplayText::elided(text, mostCharacters).split(u'\n'))
        lines += broken(DisplayText::singleLine(line), font);
    if (lines.size() > mostLines) {
        lines.resize(mostLines);
        lines.append(QStringLiteral("…"));
    }
    for (QString &line : lines)
        line = line.toHtmlEscaped();
    return lines;
}

QString markup(const QStringList &lines)
{
    return QLatin1String("<p style=\"white-space:pre\">") + lines.join(QLatin1String("<br>"))
           + QLatin1String("</p>");
}

} // namespace

QString plain(const QString &text)
{
    return markup(linesOf(text, QToolTip::font()));
}

QString titled(const QString &headline, const QString &text)
{
    QFont bold = QToolTip::font();
    bold.setBold(true);
    QStringList lines = linesOf(headline, bold);
    lines.first().prepend(QLatin1String("<b>"));
    lines.last().append(QLatin1String("</b>"));
    if (!text.isEmpty())
        lines += linesOf(text, QToolTip::font());
    return markup(lines);
}

void set(QWidget &widget, const QString &text)
{
    widget.setToolTip(text.isEmpty() ? QString() : plain(text));
    // Qt would tell screen readers even of a description that stays the same.
    const QString description = DisplayText::elided(text, mostCharacters);
    if (description != widget.accessibleDescription())
        widget.setAccessibleDescription(description);
}

void setScheme(Scheme scheme)
{
    QPalette palette = controlPalette(scheme);
    palette.setColor(QPalette::ToolTipBase, Popups::ground(palette));
    palette.setColor(QPalette::ToolTipText, palette.color(QPalette::ButtonText));
    QToolTip::setPalette(palette);
    Popups::dressThoseOfQt();
}

} // namespace tidewick::ToolTip
