// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/icon/MarkBundle.h"
#include "ui/icon/StatusIcon.h"
#include "ui/icon/SvgIconEngine.h"

#include <QApplication>
#include <QPainter>
#include <QSvgRenderer>

using namespace tidewick;
namespace fs = std::filesystem;

namespace {

/// Each badge, empty for none, with the state in the name of its symbolic icon.
const QList<std::pair<const char *, const char *>> symbolics{
    {"", ""},
    {"pause.fill", "-paused"},
    {"ellipsis", "-waiting"},
    {"arrow.down", "-downloading"},
    {"arrow.triangle.2.circlepath", "-syncing"},
    {"stop.fill", "-stopping"},
    {"exclamationmark.triangle.fill", "-error"},
};

/// An icon theme with icons of these names. It is in use as long as the object lives.
class Theme
{
public:
    Theme(const fs::path &folder, const QStringList &icons)
    {
        const fs::path theme = folder / "harbour";
        fs::create_directories(theme / "symbolic");
        writeFile(theme / "index.theme",
                  "[Icon Theme]\nName=Harbour\nDirectories=symbolic\n"
                  "[symbolic]\nSize=16\nMinSize=8\nMaxSize=512\nType=Scalable\n");
        for (const QString &icon : icons)
            writeFile(theme / "symbolic" / (icon.toStdString() + ".svg"), MarkBundle::shipped());
        QIcon::setThemeSearchPaths({QString::fromStdString(folder.string())});
        QIcon::setThemeName(QStringLiteral("harbour"));
    }
    Theme(const Theme &) = delete;
    Theme &operator=(const Theme &) = delete;
    ~Theme()
    {
        QIcon::setThemeSearchPaths(m_pathsBefore);
        QIcon::setThemeName(m_nameBefore);
    }

private:
    QStringList m_pathsBefore = QIcon::themeSearchPaths();
    QString m_nameBefore = QIcon::themeName();
};

std::string fileOf(const QString &symbolic)
{
    return TIDEWICK_RESOURCES "/icons/hicolor/symbolic/apps/" + symbolic.toStdString() + ".svg";
}

/// The icon as Qt creates it with our plugin. Left to itself, Qt prefers its own plugin.
QIcon svgIcon(const fs::path &file)
{
    const QString name = QString::fromStdString(file.string());
    QIconEngine *engine = SvgIconPlugin().create(name);
    engine->addFile(name, {}, QIcon::Normal, QIcon::Off);
    return QIcon(engine);
}

} // namespace

class TestIconTheme : public QObject
{
    Q_OBJECT

private slots:
    void namesIconsThatTheThemeHas();
    void symbolicIconsMatchTheComposedOnes_data();
    void symbolicIconsMatchTheComposedOnes();
    void symbolicIconsTakeThePanelsColor_data();
    void symbolicIconsTakeThePanelsColor();
    void applicationIconHasAllSizes();
    void svgFilesAreDrawn();
    void svgFileWithoutADrawing();
};

void TestIconTheme::namesIconsThatTheThemeHas()
{
    const MarkBundle bundle(MarkBundle::shipped());
    StatusIcon icon(bundle.bundle());
    {
        const TemporaryFolder themes;
        const Theme theme(themes.path(), {});
        QCOMPARE(icon.image(QStringLiteral("pause.fill")).name(), QString());
        QCOMPARE(icon.image(std::nullopt).name(), QString());
    }

    const TemporaryFolder themes;
    const Theme theme(themes.path(), {QStringLiteral("tidewick-symbolic"),
                                      QStringLiteral("tidewick-paused-symbolic")});
    QCOMPARE(icon.image(std::nullopt).name(), QStringLiteral("tidewick-symbolic"));
    QCOMPARE(icon.image(QStringLiteral("pause.fill")).name(),
             QStringLiteral("tidewick-paused-symbolic"));
    QCOMPARE(icon.image(QStringLiteral("stop.fill")).name(), QString());
}

void TestIconTheme::symbolicIconsMatchTheComposedOnes_data()
{
    QTest::addColumn<QString>("badge");
    QTest::addColumn<QString>("name");
    for (const auto &[badge, state] : symbolics)
        QTest::addRow("tidewick%s", state)
            << QString::fromLatin1(badge)
            << QStringLiteral("tidewick%1-symbolic").arg(QLatin1String(state));
}

void TestIconTheme::symbolicIconsMatchTheComposedOnes()
{
    QFETCH(QString, badge);
    QFETCH(QString, name);
    const MarkBundle bundle(MarkBundle::shipped());
    StatusIcon icon(bundle.bundle());
    icon.setColor(Qt::white);
    const QIcon image = icon.image(badge.isEmpty() ? std::nullopt : StatusIcon::Badge(badge));
    const TemporaryFolder themes;
    const Theme theme(themes.path(), {name});
    QCOMPARE(image.name(), name);

    // At this size, all edges of a badge fall on whole pixels without being aligned.
    constexpr int side = 160;
    QImage symbolic(side, side, QImage::Format_ARGB32_Premultiplied);
    symbolic.fill(Qt::transparent);
    QPainter painter(&symbolic);
    QSvgRenderer drawing(QString::fromStdString(fileOf(name)));
    QVERIFY(drawing.isValid());
    drawing.render(&painter);
    painter.end();
    // Only the composed image has an outline: in black, so any red is that of mark and badge.
    const QImage composed =
        picture(image, side + 16).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    int different = 0;
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            if (std::abs(qAlpha(symbolic.pixel(x, y)) - qRed(composed.pixel(x + 8, y + 8))) > 8)
                ++different;
    QCOMPARE(different, 0);
}

void TestIconTheme::symbolicIconsTakeThePanelsColor_data()
{
    symbolicIconsMatchTheComposedOnes_data();
}

/// As Plasma gives it to them, by replacing the style sheet with its own.
void TestIconTheme::symbolicIconsTakeThePanelsColor()
{
    QFETCH(QString, name);
    QByteArray recolored = contentOf(fileOf(name));
    const QByteArray sheet = R"(<style id="current-color-scheme" type="text/css">)";
    const qsizetype start = recolored.indexOf(sheet) + sheet.size();
    QVERIFY(start >= sheet.size());
    const qsizetype end = recolored.indexOf("</style>", start);
    recolored.replace(start, end - start, ".ColorScheme-Text{color:#ffffff}");

    QImage image(160, 160, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QSvgRenderer(recolored).render(&painter);
    painter.end();
    int drawn = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor color = image.pixelColor(x, y);
            if (color.alpha() < 255)
                continue;
            ++drawn;
            QCOMPARE(color, QColor(Qt::white));
        }
    }
    QVERIFY(drawn > 0);
}

void TestIconTheme::applicationIconHasAllSizes()
{
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256, 512}) {
        const QImage drawn(
            QStringLiteral(TIDEWICK_RESOURCES "/icons/hicolor/%1x%1/apps/org.tidewick.Tidewick.png")
                .arg(size));
        QCOMPARE(drawn.size(), QSize(size, size));
    }
}

void TestIconTheme::svgFilesAreDrawn()
{
    const TemporaryFolder folder;
    const fs::path file = folder.path() / "halves.svg";
    writeFile(file, R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 20 10">)"
                    R"(<rect width="10" height="10" fill="#ff0000"/></svg>)");
    const QIcon icon = svgIcon(file);
    QVERIFY(!icon.isNull());
    const QImage image = picture(icon, 40);
    QCOMPARE(image.size(), QSize(40, 40));
    QCOMPARE(image.pixelColor(1, 20), QColor(Qt::red));
    QCOMPARE(image.pixelColor(18, 11), QColor(Qt::red));
    QCOMPARE(image.pixelColor(21, 20).alpha(), 0);
    QCOMPARE(image.pixelColor(1, 8).alpha(), 0); // it keeps its aspect ratio
}

void TestIconTheme::svgFileWithoutADrawing()
{
    const TemporaryFolder folder;
    const fs::path file = folder.path() / "text.svg";
    writeFile(file, "this is no drawing");
    QVERIFY(svgIcon(file).isNull());
    QVERIFY(svgIcon(folder.path() / "missing.svg").isNull());
}

TIDEWICK_GUI_TEST_MAIN(TestIconTheme)
#include "tst_icontheme.moc"
