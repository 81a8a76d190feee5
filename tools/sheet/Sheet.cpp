// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// Draws every surface of the program on one page, so that one look shows what a change does to
// them, or prints the contrasts of their colours.

#include "Contrasts.h"
#include "Surfaces.h"
#include "support/Surroundings.h"
#include "ui/icon/ApplicationIcon.h"

#include <QApplication>
#include <QCommandLineParser>

#include <cstdio>

using namespace tidewick;

namespace {

int drawPage(const QCommandLineParser &options)
{
    QFont font(options.value(QStringLiteral("font")));
    font.setPointSizeF(options.value(QStringLiteral("points")).toDouble());
    QApplication::setFont(font);
    if (options.isSet(QStringLiteral("right-to-left")))
        QApplication::setLayoutDirection(Qt::RightToLeft);
    const Scheme scheme{options.isSet(QStringLiteral("dark")),
                        options.isSet(QStringLiteral("high-contrast"))};
    const QString file = options.positionalArguments().constFirst();
    constexpr int width = 2000;
    const QColor ground = scheme.dark ? QColor(0x0a0b0e) : QColor(0xc9ccd2);
    const int pixels = int(width * qApp->devicePixelRatio());
    if (pageOf(surfaces(scheme), pixels, ground).save(file))
        return 0;
    std::fprintf(stderr, "sheet: cannot write %s\n", qUtf8Printable(file));
    return 1;
}

} // namespace

int main(int argc, char *argv[])
{
    enterPrivateLoopback();
    const TestHome home;
    drawOffscreen();
    // All fonts of this machine, not just those of the tests.
    qputenv("FONTCONFIG_FILE", "/etc/fonts/fonts.conf");
    const QApplication application(argc, argv);
    QApplication::setWindowIcon(applicationIcon());
    QCommandLineParser options;
    options.addOptions({
        {QStringLiteral("contrasts"), QStringLiteral("Print the contrasts instead.")},
        {QStringLiteral("dark"), QStringLiteral("Use dark colours.")},
        {QStringLiteral("high-contrast"), QStringLiteral("Use colours of high contrast.")},
        {QStringLiteral("right-to-left"), QStringLiteral("Mirror the layout.")},
        {QStringLiteral("font"), QStringLiteral("Use this font."), QStringLiteral("family"),
         QStringLiteral("DejaVu Sans")},
        {QStringLiteral("points"), QStringLiteral("Use this size."), QStringLiteral("points"),
         QStringLiteral("10")},
    });
    options.addPositionalArgument(QStringLiteral("page"), QStringLiteral("The PNG file to write."));
    options.addHelpOption();
    options.process(application);
    if (options.isSet(QStringLiteral("contrasts"))) {
        std::fputs(qUtf8Printable(contrastTable()), stdout);
        return 0;
    }
    if (options.positionalArguments().size() != 1)
        options.showHelp(2);
    return drawPage(options);
}
