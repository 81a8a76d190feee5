// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QFont>

namespace tidewick {

/// A font that is unusual in one way, from a package that the tests depend on.
struct TestFont
{
    const char *kind;
    const char *package;
    /// Looked up below /usr/share/fonts, because releases of Debian keep it in different folders.
    const char *file;
};

/// A wide font, a tall one whose lines are nearly twice as high as its size, a narrow one, one
/// of Chinese, Japanese and Korean, and one whose digits differ in width.
inline constexpr TestFont testFonts[] = {
    {"wide", "fonts-dejavu-core", "DejaVuSans-Bold.ttf"},
    {"tall", "fonts-hosny-amiri", "Amiri-Regular.ttf"},
    {"narrow", "fonts-yanone-kaffeesatz", "YanoneKaffeesatz-Regular.otf"},
    {"CJK", "fonts-droid-fallback", "DroidSansFallbackFull.ttf"},
    {"uneven", "fonts-inter", "Inter-Regular.otf"},
};

/// Returns the font of that kind at that size. Aborts the test if its file is missing.
QFont testFont(const char *kind, qreal points);

/// Adds the columns "kind", "points" and "direction", and a row for every font in every size and,
/// at usual and large size, right to left.
void addTestFonts();

} // namespace tidewick
