// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/TestFonts.h"

#include <QFontDatabase>
#include <QMap>
#include <QtTest>

#include <algorithm>
#include <filesystem>

namespace tidewick {

namespace fs = std::filesystem;

namespace {

constexpr const char *allFonts = "/usr/share/fonts";

fs::path found(const TestFont &font)
{
    for (const auto &entry : fs::recursive_directory_iterator(allFonts)) {
        if (entry.path().filename() == font.file)
            return entry.path();
    }
    qFatal("There is no %s below %s: the package %s is missing", font.file, allFonts, font.package);
}

QString familyOf(const char *kind)
{
    static QMap<QByteArray, QString> families;
    QString &family = families[kind];
    if (family.isEmpty()) {
        const auto *font =
            std::find_if(std::begin(testFonts), std::end(testFonts),
                         [&](const TestFont &one) { return qstrcmp(one.kind, kind) == 0; });
        const fs::path file = found(*font);
        const int id = QFontDatabase::addApplicationFont(QString::fromStdString(file.string()));
        family = QFontDatabase::applicationFontFamilies(id).value(0);
        if (family.isEmpty())
            qFatal("%s cannot be read", file.c_str());
    }
    return family;
}

} // namespace

QFont testFont(const char *kind, qreal points)
{
    QFont font(familyOf(kind));
    font.setPointSizeF(points);
    // Regular DejaVu Sans is the usual font; its bold face is unusually wide.
    font.setBold(qstrcmp(kind, "wide") == 0);
    return font;
}

void addTestFonts()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<qreal>("points");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    for (const TestFont &font : testFonts) {
        const QByteArray kind(font.kind);
        for (const qreal points : {9.0, 10.0, 16.0, 24.0})
            QTest::addRow("%s, %g pt", font.kind, points) << kind << points << Qt::LeftToRight;
        for (const qreal points : {10.0, 20.0})
            QTest::addRow("%s, %g pt, right to left", font.kind, points)
                << kind << points << Qt::RightToLeft;
    }
}

} // namespace tidewick
