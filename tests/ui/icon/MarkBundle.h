// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/TestFiles.h"
#include "ui/icon/StatusIcon.h"

namespace tidewick {

/// A bundle whose only content is a mark.
class MarkBundle
{
public:
    /// Creates a bundle without a mark.
    MarkBundle();
    explicit MarkBundle(const QByteArray &mark);

    /// The path of the mark.
    std::filesystem::path path() const;
    Bundle bundle() const { return Bundle(m_folder.path()); }

    /// The mark that the application ships with.
    static QByteArray shipped();

    /// A mark that fills its canvas, so that its position can be measured.
    static QByteArray block(int width, int height);

private:
    TemporaryFolder m_folder;
};

/// The bounding rectangle of all pixels that are at least half opaque.
QRect ink(const QImage &picture, const QRect &within);
QRect ink(const QImage &picture);

/// The icon rendered into a square of that size, in pixels.
QImage picture(const QIcon &icon, int size);

} // namespace tidewick
