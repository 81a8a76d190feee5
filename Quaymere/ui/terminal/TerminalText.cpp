// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/terminal/TerminalText.h"

#include <QList>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <cwchar>

#include <locale.h>

namespace tidewick::TerminalText {

namespace {

/// Runs the current thread in a UTF-8 locale for the lifetime of this object: only there does the C
/// library know character widths, and the program may run in any locale.
class WidthLocale
{
public:
    WidthLocale() : m_before(::uselocale(utf8())) {}
    WidthLocale(const WidthLocale &) = delete;
    WidthLocale &operator=(const WidthLocale &) = delete;
    ~WidthLocale() { ::uselocale(m_before); }

private:
    /// Loaded once. If the system has no such locale, the null locale changes nothing, and every
    /// character outside ASCII counts as wide.
    static locale_t utf8()
    {
        static const locale_t loaded = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return loaded;
    }

    locale_t m_before;
};

/// Returns the columns of one user-perceived character. A WidthLocale must exist.
int clusterColumns(QStringView cluster)
{
    int sum = 0;
    for (const char32_t codePoint : cluster.toUcs4()) {
        // Selects the emoji form of a character, which is wide.
        if (codePoint == U'\ufe0f' && sum == 1) {
            sum = 2;
            continue;
        }
        const int width = ::wcwidth(wchar_t(codePoint));
        // Characters newer than the C library are mostly emoji.
        sum += width < 0 ? 2 : width;
    }
    return sum;
}

/// Calls `visit(position, columns)` for each character until it returns false.
template <typename Visit>
void visitClusters(const QString &text, Visit visit)
{
    const WidthLocale locale;
    QTextBoundaryFinder boundaries(QTextBoundaryFinder::Grapheme, text);
    qsizetype start = 0;
    for (qsizetype end = boundaries.toNextBoundary(); end > start;
         end = boundaries.toNextBoundary()) {
        if (!visit(start, clusterColumns(QStringView(text).sliced(start, end - start))))
            return;
        start = end;
    }
}

} // namespace

int columns(const QString &text)
{
    int sum = 0;
    visitClusters(text, [&](qsizetype, int width) {
        sum += width;
        return true;
    });
    return sum;
}

QString elided(const QString &text, int columns)
{
    int used = 0;
    qsizetype cut = 0;
    visitClusters(text, [&](qsizetype start, int width) {
        // The position of the ellipsis, should one be needed.
        if (used < columns)
            cut = start;
        used += width;
        return used <= columns;
    });
    return used <= columns ? text : text.first(cut) + u'…';
}

QList<QString> wrapped(const QString &text, int columns)
{
    QList<QString> lines;
    qsizetype lineStart = 0;
    qsizetype wordStart = 0; // of the first word that may go to the next line
    int used = 0;            // from the line's start
    int usedByWord = 0;      // from the word's start
    visitClusters(text, [&](qsizetype at, int width) {
        if (text[at] == u' ') {
            wordStart = at + 1;
            usedByWord = 0;
            used += width;
            return true;
        }
        if (used + width > columns && used > 0) {
            const bool withinWord = wordStart <= lineStart;
            const qsizetype cut = withinWord ? at : wordStart;
            lines.append(text.sliced(lineStart, cut - lineStart).trimmed());
            lineStart = cut;
            used = withinWord ? 0 : usedByWord;
        }
        used += width;
        usedByWord += width;
        return true;
    });
    lines.append(text.sliced(lineStart).trimmed());
    return lines;
}

int wrappedLines(const QString &text, int columns)
{
    int lines = 1;
    int used = 0;
    visitClusters(text, [&](qsizetype, int width) {
        if (used + width > columns) {
            ++lines;
            used = 0;
        }
        used += width;
        return true;
    });
    return lines;
}

} // namespace tidewick::TerminalText
