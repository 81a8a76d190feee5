// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/text/DisplayText.h"

#include <QTextBoundaryFinder>

namespace tidewick::DisplayText {

namespace {

/// Embeddings, overrides and isolates. The plain direction marks are not among them: they affect
/// only adjacent characters.
bool turnsDirection(QChar character)
{
    return (character >= u'\u202a' && character <= u'\u202e')
           || (character >= u'\u2066' && character <= u'\u2069');
}

bool breaksLine(QChar character)
{
    return character.category() == QChar::Other_Control || character == u'\u2028'
           || character == u'\u2029';
}

} // namespace

QString singleLine(const QString &text)
{
    QString line;
    line.reserve(text.size());
    for (const QChar character : text) {
        if (breaksLine(character))
            line += u' ';
        else if (!turnsDirection(character))
            line += character;
    }
    return line;
}

QString elided(const QString &text, qsizetype limit)
{
    if (text.size() <= limit)
        return text;
    // Endless combining marks on one character must not make this examine all of a long text.
    const QString head = text.first(std::min(text.size(), limit * 16));
    QTextBoundaryFinder boundaries(QTextBoundaryFinder::Grapheme, head);
    qsizetype kept = 0;
    qsizetype position = 0;
    for (qsizetype count = 0; count < limit && position < head.size(); ++count) {
        kept = position;
        position = boundaries.toNextBoundary();
    }
    return position == text.size() ? text : head.first(kept) + u'…';
}

} // namespace tidewick::DisplayText
