// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/ToolTip.h"

#include "platform/text/DisplayText.h"
#include "ui/controls/ControlPalette.h"

#include <QStringList>
#include <QToolTip>
#include <QWidget>

namespace tidewick::ToolTip {

namespace {

/// A tooltip that fills the screen is of no use.
constexpr qsizetype mostCharacters = 4000;
constexpr qsizetype mostLines = 40;

/// Inserts break opportunities into words that are too long for the width of a tooltip.
QString breakable(const QString &line)
{
    constexpr int longWord = 60;
    QString broken;
    int length = 0;
    for (const QChar character : line) {
        const bool joined = character.isLowSurrogate() || character.isMark()
                            || character.category() == QChar::Other_Format;
        if (length >= longWord && !joined) {
            broken += QChar(0x200b);
            length = 0;
        }
        broken += character;
        length = character.isSpace() ? 0 : length + 1;
    }
    return broken;
}

} // namespace

QString plain(const QString &text)
{
    QStringList lines = DisplayText::elided(text, mostCharacters).split(u'\n');
    if (lines.size() > mostLines) {
        lines.resize(mostLines);
        lines.append(QStringLiteral("…"));
    }
    for (QString &line : lines)
        line = breakable(DisplayText::singleLine(line)).toHtmlEscaped();
    return QLatin1String("<p style=\"white-space:pre-wrap\">") + lines.join(QLatin1String("<br>"))
           + QLatin1String("</p>");
}

void set(QWidget &widget, const QString &text)
{
    widget.setToolTip(text.isEmpty() ? QString() : plain(text));
    widget.setAccessibleDescription(DisplayText::elided(text, mostCharacters));
}

void setScheme(Scheme scheme)
{
    QPalette palette = controlPalette(scheme);
    palette.setColor(QPalette::ToolTipBase, palette.color(QPalette::Button));
    palette.setColor(QPalette::ToolTipText, palette.color(QPalette::ButtonText));
    QToolTip::setPalette(palette);
}

} // namespace tidewick::ToolTip
