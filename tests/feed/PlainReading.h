// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "feed/StreamReader.h"

#include <QString>

namespace tidewick {

/// What a message says, on one line.
QString described(const StreamMessage &message);

/// What Qt's parser makes of a message, with no care for speed.
struct PlainReading
{
    bool accepted = false;
    /// As described() tells it.
    QString says;

    static PlainReading of(const QString &text);
};

} // namespace tidewick
