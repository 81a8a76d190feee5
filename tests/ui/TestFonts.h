// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QFont>

namespace tidewick {

/// A font that differs from the usual ones in one way, out of a package that the tests need.
struct TestFont
{
    const char *kind;
    const char *package;
    /// Wherever below /usr/share/fonts a release of Debian has it.
    const char *file;
};

/// Wide; tall, its lines being nearly twice as high as its size; narrow.
inline constexpr TestFont testFonts[] = {
    {"wide", "fonts-dejavu-core", "DejaVuSans-Bold.ttf"},
    {"tall", "fonts-hosny-amiri", "Amiri-Regular.ttf"},
    {"narrow", "fonts-yanone-kaffeesatz", "YanoneKaffeesatz-Regular.otf"},
};

/// The font of that kind in that size; the test fails where its file is missing.
QFont testFont(const char *kind, qreal points);

/// Adds the columns "kind" and "points", and a row for every font in every size.
void addTestFonts();

} // namespace tidewick
