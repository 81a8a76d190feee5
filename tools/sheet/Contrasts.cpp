// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Contrasts.h"

#include "ui/Colors.h"
#include "ui/controls/ControlPalette.h"
#include "ui/ledger/LedgerDrawing.h"
#include "ui/ledger/Palette.h"

#include <array>
#include <functional>

namespace tidewick {

namespace {

constexpr std::array<Scheme, 4> schemes{
    {{false, false}, {true, false}, {false, true}, {true, true}}};

/// Something drawn and what is behind it, which is opaque.
struct Pair
{
    const char *name;
    std::function<QColor(const Scheme &)> drawn;
    std::function<QColor(const Scheme &)> ground;
};

auto control(QPalette::ColorRole role)
{
    return [role](const Scheme &scheme) { return controlPalette(scheme).color(role); };
}

auto ledger(QColor Palette::*color)
{
    return [color](const Scheme &scheme) { return Palette(scheme).*color; };
}

auto drawn(QColor (*color)(const Palette &))
{
    return [color](const Scheme &scheme) { return color(Palette(scheme)); };
}

QColor failure(const Scheme &scheme)
{
    const Palette colors(scheme);
    return LedgerDrawing::mixed(colors.thread, colors.ink, 0.3F);
}

/// Translucent, with ink below it.
QColor average(const Scheme &scheme)
{
    const Palette colors(scheme);
    return LedgerDrawing::mixed(colors.ink, colors.thread, 0.8F);
}

/// The control's own colour with the fill of a control under the pointer on top.
QColor hovered(const Scheme &scheme)
{
    const QPalette colors = controlPalette(scheme);
    return over(colors.color(QPalette::AlternateBase), colors.color(QPalette::Button));
}

QColor pill(const Scheme &scheme)
{
    const Palette colors(scheme);
    return over(colors.accentSoft, colors.bg);
}

const std::vector<Pair> &pairs()
{
    static const std::vector<Pair> all{
        {"title on a window", control(QPalette::WindowText), control(QPalette::Window)},
        {"label on a card", control(QPalette::WindowText), control(QPalette::Base)},
        {"paragraph on a window", control(QPalette::Text), control(QPalette::Window)},
        {"figure on a card", control(QPalette::Text), control(QPalette::Base)},
        {"footnote on a window", control(QPalette::PlaceholderText), control(QPalette::Window)},
        {"detail on a card", control(QPalette::PlaceholderText), control(QPalette::Base)},
        {"error on a window", control(QPalette::BrightText), control(QPalette::Window)},
        {"text of a button", control(QPalette::ButtonText), control(QPalette::Button)},
        {"text of a button, hovered", control(QPalette::ButtonText), hovered},
        {"arrows of a picker", control(QPalette::PlaceholderText), control(QPalette::Button)},
        {"selected choice", control(QPalette::HighlightedText), control(QPalette::Highlight)},
        {"advice", control(QPalette::WindowText), control(QPalette::ToolTipBase)},
        {"focus ring on a card", control(QPalette::Link), control(QPalette::Base)},
        {"focus ring on a window", control(QPalette::Link), control(QPalette::Window)},
        {"ledger: figure on a card", ledger(&Palette::ink), ledger(&Palette::surface)},
        {"ledger: type on a card", ledger(&Palette::ink2), ledger(&Palette::surface)},
        {"ledger: detail on a card", ledger(&Palette::ink3), ledger(&Palette::surface)},
        {"ledger: footnote", ledger(&Palette::ink3), ledger(&Palette::bg)},
        {"ledger: pill", ledger(&Palette::link), pill},
        {"ledger: result of a failure", failure, ledger(&Palette::surface)},
        {"ledger: bar", drawn(LedgerDrawing::bar), ledger(&Palette::surface)},
        {"ledger: bar under the pointer", ledger(&Palette::link), ledger(&Palette::surface)},
        {"ledger: bar of the past", drawn(LedgerDrawing::oldBar), ledger(&Palette::surface)},
        {"ledger: line below the bars", drawn(LedgerDrawing::baseline), ledger(&Palette::surface)},
        {"ledger: line at the average", average, ledger(&Palette::surface)},
    };
    return all;
}

} // namespace

QString contrastTable()
{
    QString table = QStringLiteral("%1  light   dark  light+  dark+\n").arg(QString(), -32);
    for (const Pair &pair : pairs()) {
        table += QStringLiteral("%1").arg(QString::fromLatin1(pair.name), -32);
        for (const Scheme &scheme : schemes) {
            const QColor ground = pair.ground(scheme);
            table += QStringLiteral("%1").arg(contrast(over(pair.drawn(scheme), ground), ground), 7,
                                              'f', 2);
        }
        table += u'\n';
    }
    return table;
}

} // namespace tidewick
