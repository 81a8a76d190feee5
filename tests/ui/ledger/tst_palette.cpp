// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/Colors.h"
#include "ui/ledger/Palette.h"

using namespace tidewick;

class TestPalette : public QObject
{
    Q_OBJECT

private slots:
    void colors_data();
    void colors();
    void schemesDifferInEveryColor();
    void linesAndLinksOfTheLightScheme();
    void highContrast();
};

namespace {

struct Field
{
    const char *name;
    QColor Palette::*color;
};

constexpr std::array<Field, 10> fields{{
    {"bg", &Palette::bg},
    {"surface", &Palette::surface},
    {"ink", &Palette::ink},
    {"ink2", &Palette::ink2},
    {"ink3", &Palette::ink3},
    {"line", &Palette::line},
    {"accent", &Palette::accent},
    {"accentSoft", &Palette::accentSoft},
    {"link", &Palette::link},
    {"thread", &Palette::thread},
}};

struct Expected
{
    int red;
    int green;
    int blue;
    double opacity = 1;
};

constexpr std::array<Expected, 10> darkColors{{{15, 18, 24},
                                               {23, 27, 35},
                                               {236, 232, 225},
                                               {180, 183, 192},
                                               {143, 147, 161},
                                               {255, 255, 255, 0.11},
                                               {47, 98, 224},
                                               {110, 150, 255, 0.12},
                                               {143, 173, 255},
                                               {224, 162, 74}}};

constexpr std::array<Expected, 10> lightColors{{{245, 242, 236},
                                                {255, 253, 249},
                                                {28, 29, 33},
                                                {79, 82, 96},
                                                {104, 107, 119},
                                                {28, 29, 33, 0.12},
                                                {37, 83, 199},
                                                {37, 83, 199, 0.09},
                                                {37, 83, 199},
                                                {201, 130, 42}}};

} // namespace

void TestPalette::colors_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QList<int>>("channels");
    QTest::addColumn<double>("opacity");
    for (const bool dark : {false, true}) {
        const Palette palette({dark});
        for (std::size_t i = 0; i < fields.size(); ++i) {
            const Expected &color = dark ? darkColors.at(i) : lightColors.at(i);
            QTest::addRow("%s, %s", fields.at(i).name, dark ? "dark" : "light")
                << palette.*fields.at(i).color << QList<int>{color.red, color.green, color.blue}
                << color.opacity;
        }
    }
}

void TestPalette::colors()
{
    QFETCH(QColor, color);
    QFETCH(QList<int>, channels);
    QFETCH(double, opacity);
    QCOMPARE(color.spec(), QColor::Rgb);
    QCOMPARE((QList<int>{color.red(), color.green(), color.blue()}), channels);
    // QColor stores the opacity in 16 bits.
    QVERIFY(std::abs(double(color.alphaF()) - opacity) <= 1.0 / 65535);
}

void TestPalette::schemesDifferInEveryColor()
{
    for (const Field &field : fields)
        QVERIFY2(Palette({true}).*field.color != Palette({false}).*field.color, field.name);
}

void TestPalette::linesAndLinksOfTheLightScheme()
{
    const Palette light({false});
    QColor line = light.line;
    line.setAlphaF(1);
    QCOMPARE(line, light.ink);
    QCOMPARE(light.link, light.accent);
    QVERIFY(Palette({true}).link != Palette({true}).accent);
}

void TestPalette::highContrast()
{
    for (const bool dark : {false, true}) {
        const Palette palette({dark, true});
        QCOMPARE(contrast(palette.ink, palette.bg), 21.0);
        for (const QColor &text : {palette.ink2, palette.ink3, palette.link}) {
            QVERIFY(contrast(text, palette.bg) >= 7);
            QVERIFY(contrast(text, palette.surface) >= 7);
            QVERIFY(contrast(text, over(palette.accentSoft, palette.surface)) >= 7);
        }
        for (const QColor &graphic : {palette.line, palette.accent, palette.thread})
            QVERIFY(contrast(over(graphic, palette.surface), palette.surface) >= 4.5);
    }
}

TIDEWICK_TEST_MAIN(TestPalette)
#include "tst_palette.moc"
