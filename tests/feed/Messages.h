// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "feed/StreamReader.h"

#include <QByteArray>
#include <QStringList>

namespace tidewick {

/// The texts that a real node sent in a recorded session, in their order.
QStringList recordedTexts(const char *file);

/// What a message says, on one line.
QString described(const StreamMessage &message);

/// JSON with single quotes for double ones, to be easier on the eye.
QString json(const char *text);

/// What the reader under test makes of a message.
QString said(const QString &text);

/// What Qt's parser makes of a message, with no care for speed.
struct PlainReading
{
    bool accepted = false;
    /// As described() tells it.
    QString says;

    static PlainReading of(const QString &text);
};

} // namespace tidewick
