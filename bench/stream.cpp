// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// The time that the feed takes for a transaction message, compared with parsing the same bytes, and
// the memory in use after an hour of busy traffic.

#include "bench/LedgerTraffic.h"
#include "bench/Measure.h"
#include "feed/LedgerFeed.h"
#include "support/Surroundings.h"
#include "ui/ledger/LedgerWindow.h"

#include <QApplication>
#include <QJsonDocument>

#include <simdjson.h>

using namespace tidewick;
using namespace tidewick::bench;

namespace {

constexpr int messages = 1'000'000;
/// Qt's parser is slow enough for these to be measured.
constexpr int fewMessages = messages / 10;
constexpr int rounds = 5;

void measureReading(const QStringList &recorded)
{
    std::vector<simdjson::padded_string> padded;
    QByteArrayList bytes;
    for (const QString &text : recorded) {
        bytes += text.toUtf8();
        padded.emplace_back(bytes.last().constData(), std::size_t(bytes.last().size()));
    }
    LedgerFeed feed(LedgerTraffic().stream().host());
    const auto handle = [&](int count) {
        for (int i = 0; i < count; ++i)
            feed.handle(recorded.at(i % recorded.size()));
    };
    simdjson::dom::parser parser;
    const auto parse = [&] {
        for (std::size_t i = 0; i < std::size_t(messages); ++i)
            if (parser.parse(padded[i % padded.size()]).error() != simdjson::SUCCESS)
                qFatal("A recorded message does not parse");
    };
    const auto parseByQt = [&] {
        for (int i = 0; i < fewMessages; ++i)
            if (QJsonDocument::fromJson(bytes.at(i % bytes.size())).isNull())
                qFatal("A recorded message does not parse");
    };
    print("a million messages handled / parsed by simdjson",
          measure(
              rounds, [&] { handle(messages); }, parse),
          "<= 4");
    print("100,000 messages handled / parsed by Qt",
          measure(
              rounds, [&] { handle(fewMessages); }, parseByQt),
          "");
}

void measureMemory()
{
    LedgerTraffic traffic;
    LedgerWindow window([](const QUrl &) { return true; }, traffic.stream().host());
    window.resize(800, 780);
    window.show();
    traffic.run(std::chrono::minutes(1));
    const double minute = memory(::getpid());
    traffic.run(std::chrono::minutes(59));
    const double hour = memory(::getpid());
    printMemory("ledger window after an hour of traffic / after a minute", hour, minute,
                "at most 1 MiB more");
}

} // namespace

int main(int argc, char *argv[])
{
    const TestHome home;
    drawOffscreen();
    const QApplication application(argc, argv);
    measureMemory();
    measureReading(LedgerTraffic().recorded());
    return 0;
}
