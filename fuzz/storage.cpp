// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Checks.h"
#include "node/StorageStatus.h"
#include "platform/json/JsonRead.h"

#include <QLoggingCategory>
#include <QStringList>

using namespace tidewick;
using namespace std::chrono_literals;

namespace {

/// Of the digits of two numbers, each the largest there is, and the words around them.
constexpr qsizetype ownWords = 1000;

/// A store that lasts for one input. It cannot be written, since nobody can make a folder there,
/// and so it is kept in memory.
Defaults newDefaults()
{
    static quint64 count = 0;
    return Defaults("/proc/tidewick-fuzz/" + std::to_string(++count) + ".ini");
}

/// Whether the report may bring in this word itself. Qt's parser passes over a backslash before
/// anything else than the known escapes.
bool mayHold(const QByteArray &report, const char *word)
{
    return report.contains("\\u") || QByteArray(report).replace('\\', QByteArray()).contains(word);
}

void requireSound(const QString &line, const QByteArray &report)
{
    using Fuzzing::require;
    require(line.startsWith(QLatin1String("Storage")), "a line says what it is about");
    require(line.size() <= report.size() + ownWords, "a line is no longer than what it tells");
    require(!line.contains(QLatin1String("nan")) || mayHold(report, "nan"), "numbers are numbers");
    require(!line.contains(QLatin1String("tidy-up in 0m")) || mayHold(report, "tidy-up in 0m"),
            "what is under a minute is called so");
    Fuzzing::requireShowable(line);
}

QStringList describeAll(const QByteArrayList &reports)
{
    StorageStatus status(newDefaults());
    WallClock::time_point now{500'000h};
    QStringList lines;
    for (const QByteArray &report : reports) {
        // Beyond what the growth is sampled for, so that one report later there is a rate.
        now += 11min;
        const auto object = JsonRead::parseObject(report);
        if (!object)
            continue;
        const QString line = status.describe(*object, now);
        requireSound(line, report);
        Fuzzing::require(status.describe(*object, now) == line, "told twice, shown alike");
        lines += line;
    }
    return lines;
}

} // namespace

/// Reports of the storage engine, one on each line, as they come from poll to poll.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const bool quiet = [] {
        QLoggingCategory::setFilterRules(QStringLiteral("tidewick.*=false"));
        return true;
    }();
    Q_UNUSED(quiet)
    const QByteArrayList reports = Fuzzing::bytesOf(data, size).split('\n');
    Fuzzing::require(describeAll(reports) == describeAll(reports), "the same each time");
    return 0;
}
