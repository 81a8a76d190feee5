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

/// Room for the digits of two numbers of maximum length, and the words around them.
constexpr qsizetype ownWords = 1000;

/// Settings for a single input. Since nobody can create a folder there, they cannot be written and
/// stay in memory.
Defaults newDefaults()
{
    static quint64 count = 0;
    return Defaults("/proc/tidewick-fuzz/" + std::to_string(++count) + ".ini");
}

/// Whether the word may come from the report itself. Qt's parser ignores a backslash before
/// anything other than the known escapes.
bool mayHold(const QByteArray &report, const char *word)
{
    return report.contains("\\u") || QByteArray(report).replace('\\', QByteArray()).contains(word);
}

void requireSound(const QString &line, const QByteArray &report)
{
    using Fuzzing::require;
    require(line.startsWith(QLatin1String("Storage")), "a line begins with its subject");
    require(line.size() <= report.size() + ownWords, "a line is in proportion to its report");
    require(!line.contains(QLatin1String("nan")) || mayHold(report, "nan"), "numbers are numbers");
    require(!line.contains(QLatin1String("tidy-up in 0m")) || mayHold(report, "tidy-up in 0m"),
            "less than a minute is not shown as 0m");
    Fuzzing::requireShowable(line);
}

QStringList describeAll(const QByteArrayList &reports)
{
    StorageStatus status(newDefaults());
    WallClock::time_point now{500'000h};
    QStringList lines;
    for (const QByteArray &report : reports) {
        // Longer than the sampling period of the growth, so that the next report has a rate.
        now += 11min;
        const auto object = JsonRead::parseObject(report);
        if (!object)
            continue;
        const QString line = status.describe(*object, now);
        requireSound(line, report);
        Fuzzing::require(status.describe(*object, now) == line, "the same report changes nothing");
        lines += line;
    }
    return lines;
}

} // namespace

/// Fuzzes reports of the storage engine, one per line, as successive polls receive them.
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
