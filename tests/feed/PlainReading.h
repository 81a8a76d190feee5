// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "feed/StreamReader.h"

#include <QString>

namespace tidewick {

/// The content of a message on one line.
QString described(const StreamMessage &message);

/// A message as Qt's parser reads it, without regard for speed.
struct PlainReading
{
    bool accepted = false;
    /// The content, formatted by described().
    QString says;

    static PlainReading of(const QString &text);
};

} // namespace tidewick
