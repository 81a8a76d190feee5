// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/ScreenModel.h"

#include <algorithm>
#include <cwchar>

#include <locale.h>

namespace tidewick {

namespace {

int widthOf(char32_t character)
{
    static const locale_t utf8 = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    const locale_t before = ::uselocale(utf8);
    const int width = ::wcwidth(wchar_t(character));
    ::uselocale(before);
    return std::max(0, width);
}

bool isControl(char32_t character)
{
    return character < 0x20 || (character >= 0x7f && character < 0xa0);
}

} // namespace

void ScreenModel::feed(const QByteArray &bytes)
{
    const QString text = m_decoder(bytes);
    for (const char32_t character : text.toUcs4())
        take(character);
}

void ScreenModel::take(char32_t character)
{
    if (m_sequence.isEmpty()) {
        if (isControl(character))
            control(character);
        else
            print(character);
        return;
    }
    m_sequence += QString::fromUcs4(&character, 1);
    const bool begins = m_sequence.size() == 2 && character == U'[';
    if (!begins && character >= U'@')
        sequence(character);
}

void ScreenModel::control(char32_t character)
{
    if (character == U'\r')
        m_column = 0;
    else if (character == U'\n')
        lineFeed();
    else if (character == U'\x1b')
        m_sequence = u'\x1b';
    else
        m_strange.append(QString::number(character, 16));
}

void ScreenModel::sequence(char32_t last)
{
    const QString whole = std::exchange(m_sequence, {});
    if (whole[1] != u'[') {
        m_strange.append(whole.sliced(1));
        return;
    }
    const QString parameter = whole.sliced(2).chopped(1);
    if (last == U'A') {
        m_line = std::max(m_top, m_line - std::max(1, parameter.toInt()));
    } else if (last == U'K' && parameter.isEmpty()) {
        // After a character in the last column, the cursor stays on that column.
        const int from = std::min(m_column, m_columns - 1);
        if (line().cells.size() > from)
            line().cells.resize(from);
        line().goesOnBelow = false;
    } else if (last == U'J' && parameter.isEmpty()) {
        m_lines.resize(m_line + 1);
        if (line().cells.size() > m_column)
            line().cells.resize(m_column);
    } else if (last == U'm' && (parameter.isEmpty() || parameter == u'2')) {
        m_dim = !parameter.isEmpty();
    } else if (parameter == QLatin1String("?7") && (last == U'h' || last == U'l')) {
        m_wraps = last == U'h';
    } else {
        m_strange.append(whole.sliced(1));
    }
}

void ScreenModel::print(char32_t character)
{
    const QString text = QString::fromUcs4(&character, 1);
    const int width = widthOf(character);
    if (width == 0) {
        if (m_column > 0 && line().cells.size() >= m_column)
            line().cells[m_column - 1].text += text;
        return;
    }
    if (m_column + width > m_columns) {
        if (m_wraps) {
            line().goesOnBelow = true;
            m_column = 0;
            lineFeed();
        } else {
            m_column = m_columns - width;
        }
    }
    QList<Cell> &cells = line().cells;
    cells.resize(std::max<qsizetype>(cells.size(), m_column + width), {QStringLiteral(" ")});
    cells[m_column] = {text, m_dim};
    for (int i = 1; i < width; ++i)
        cells[m_column + i] = {{}, m_dim};
    m_column += width;
}

void ScreenModel::lineFeed()
{
    ++m_line;
    if (m_line == m_lines.size())
        m_lines.append(Line{});
    m_top = std::max(m_top, m_line - m_rows + 1);
}

ScreenModel::Line &ScreenModel::line()
{
    return m_lines[m_line];
}

void ScreenModel::resize(int columns, int rows)
{
    QList<Line> wrapped;
    qsizetype cursorLine = 0;
    bool continues = false;
    for (qsizetype i = 0; i < m_lines.size(); ++i) {
        if (!continues)
            wrapped.append(Line{});
        if (i == m_line)
            cursorLine = wrapped.size() - 1;
        const QList<Cell> &cells = m_lines[i].cells;
        for (qsizetype first = 0; first < cells.size();) {
            qsizetype end = first + 1;
            while (end < cells.size() && cells[end].text.isNull())
                ++end;
            if (wrapped.constLast().cells.size() + end - first > columns) {
                wrapped.last().goesOnBelow = true;
                wrapped.append(Line{});
            }
            wrapped.last().cells += cells.sliced(first, end - first);
            first = end;
        }
        continues = m_lines[i].goesOnBelow;
    }
    m_lines = wrapped;
    m_line = cursorLine;
    m_columns = columns;
    m_rows = rows;
    m_column = std::min(m_column, columns);
    m_top = std::clamp<qsizetype>(m_lines.size() - rows, 0, m_line);
    m_top = std::max(m_top, m_line - rows + 1);
}

QString ScreenModel::textOf(const Line &line)
{
    QString text;
    for (const Cell &cell : line.cells)
        text += cell.text;
    while (text.endsWith(u' '))
        text.chop(1);
    return text;
}

QList<QString> ScreenModel::linesFrom(qsizetype first) const
{
    QList<QString> lines;
    for (const Line &line : m_lines.sliced(first))
        lines.append(textOf(line));
    while (!lines.isEmpty() && lines.constLast().isEmpty())
        lines.removeLast();
    return lines;
}

QList<QString> ScreenModel::screen() const
{
    return linesFrom(m_top);
}

QList<QString> ScreenModel::everything() const
{
    return linesFrom(0);
}

QList<QString> ScreenModel::dimTexts() const
{
    QList<QString> texts;
    for (const Line &line : m_lines) {
        QString text;
        for (const Cell &cell : line.cells) {
            if (cell.dim)
                text += cell.text;
        }
        if (!text.isEmpty())
            texts.append(text);
    }
    return texts;
}

} // namespace tidewick
