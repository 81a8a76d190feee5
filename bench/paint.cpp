// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// The time to paint the ledger window, at its initial size and device pixel ratio 2, compared with
// filling the same area with one colour.

#include "bench/LedgerTraffic.h"
#include "bench/Measure.h"
#include "support/Surroundings.h"
#include "ui/ledger/LedgerWindow.h"

#include <QApplication>
#include <QPainter>
#include <QPixmap>

using namespace tidewick;
using namespace tidewick::bench;

namespace {

constexpr int rounds = 201;
constexpr Duration frame(0.004);

/// The cheapest possible repaint.
class Fill final : public QWidget
{
protected:
    void paintEvent(QPaintEvent *event) override
    {
        QPainter(this).fillRect(event->rect(), Qt::darkBlue);
    }
};

} // namespace

int main(int argc, char *argv[])
{
    const TestHome home;
    drawOffscreen();
    qputenv("QT_SCALE_FACTOR", "2");
    const QApplication application(argc, argv);

    LedgerTraffic traffic;
    LedgerWindow window([](const QUrl &) { return true; }, traffic.stream().host());
    window.setStill(true);
    window.resize(800, 780);
    window.show();
    Fill fill;
    fill.setAttribute(Qt::WA_OpaquePaintEvent);
    fill.resize(window.size());
    traffic.run(std::chrono::minutes(5));
    QCoreApplication::processEvents();

    // Not repaint(), which skips areas covered by children that did not change.
    QPixmap screen(window.size() * window.devicePixelRatio());
    screen.setDevicePixelRatio(window.devicePixelRatio());
    const auto repaint = [&] { window.render(&screen); };
    const Pair whole = measure(rounds, repaint, [&] { fill.render(&screen); });
    print("repaint of the ledger window / a fill of its size", whole, "");
    print("the same / 4 ms", {whole.first, frame}, "<= 1");

    const auto flush = [&] {
        traffic.transact(10);
        traffic.stream().clock().advance(std::chrono::milliseconds(400));
        QCoreApplication::processEvents();
    };
    print("ten transactions arrive / a whole repaint", measure(rounds, flush, repaint), "< 0.5");
    return 0;
}
