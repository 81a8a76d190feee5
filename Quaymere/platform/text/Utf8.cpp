// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/text/Utf8.h"

#include <QStringDecoder>

namespace tidewick::Utf8 {

namespace {

/// The continuation bytes allowed after a lead byte: their number, and the range of the first one.
/// The range is narrower if the full one would allow overlong forms, surrogates or values above
/// U+10FFFF.
struct Sequence
{
    int continuations;
    uchar first;
    uchar last;
};

Sequence sequenceAfter(uchar lead)
{
    if (lead >= 0xC2 && lead <= 0xDF)
        return {1, 0x80, 0xBF};
    if (lead == 0xE0)
        return {2, 0xA0, 0xBF};
    if (lead == 0xED)
        return {2, 0x80, 0x9F};
    if (lead >= 0xE1 && lead <= 0xEF)
        return {2, 0x80, 0xBF};
    if (lead == 0xF0)
        return {3, 0x90, 0xBF};
    if (lead >= 0xF1 && lead <= 0xF3)
        return {3, 0x80, 0xBF};
    if (lead == 0xF4)
        return {3, 0x80, 0x8F};
    return {0, 0, 0};
}

struct Decoded
{
    char32_t character;
    qsizetype length;
};

/// Reads one character, or the longest beginning of one. At least one byte must be available.
Decoded decodeNext(const uchar *bytes, qsizetype available)
{
    const uchar lead = bytes[0];
    if (lead < 0x80)
        return {lead, 1};
    auto [continuations, first, last] = sequenceAfter(lead);
    if (continuations == 0)
        return {QChar::ReplacementCharacter, 1};

    char32_t character = lead & (0x3F >> continuations);
    for (qsizetype i = 1; i <= continuations; ++i) {
        if (i >= available || bytes[i] < first || bytes[i] > last)
            return {QChar::ReplacementCharacter, i};
        character = (character << 6) | (bytes[i] & 0x3F);
        first = 0x80;
        last = 0xBF;
    }
    return {character, continuations + 1};
}

} // namespace

std::optional<QString> decode(const QByteArray &bytes)
{
    // Stateless, so that a character cut off at the end is an error too.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless
                                                     | QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

QString decodeLossy(const QByteArray &bytes)
{
    QString text;
    text.reserve(bytes.size());
    const auto *data = reinterpret_cast<const uchar *>(bytes.constData());
    for (qsizetype at = 0; at < bytes.size();) {
        const Decoded next = decodeNext(data + at, bytes.size() - at);
        text += QChar::fromUcs4(next.character);
        at += next.length;
    }
    return text;
}

} // namespace tidewick::Utf8
