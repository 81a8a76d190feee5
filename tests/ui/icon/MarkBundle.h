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
    /// Without a mark.
    MarkBundle();
    explicit MarkBundle(const QByteArray &mark);

    /// Where the mark is.
    std::filesystem::path path() const;
    Bundle bundle() const { return Bundle(m_folder.path()); }

    /// The mark that is shipped.
    static QByteArray shipped();

    /// A mark that fills the whole of its canvas, so that its place can be measured.
    static QByteArray block(int width, int height);

private:
    TemporaryFolder m_folder;
};

/// The smallest rectangle with everything that is at least half covered.
QRect ink(const QImage &picture, const QRect &within);
QRect ink(const QImage &picture);

/// The icon in a square of so many pixels.
QImage picture(const QIcon &icon, int size);

} // namespace tidewick
