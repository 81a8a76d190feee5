// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/settings/SettingsChoices.h"

#include "node/Settings.h"
#include "platform/text/NumberText.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tidewick::SettingsChoices {

QList<Choice> choices(QList<qint64> values, qint64 current, const Label &label)
{
    if (!values.contains(current)) {
        values.append(current);
        std::sort(values.begin(), values.end());
    }
    QList<Choice> choices;
    for (const qint64 value : std::as_const(values))
        choices.append({value, label(value)});
    return choices;
}

QString durationLabel(qint64 minutes)
{
    struct Unit
    {
        qint64 minutes;
        const char *name;
    };
    static constexpr std::array<Unit, 4> units{
        {{10080, "week"}, {1440, "day"}, {60, "hour"}, {1, "minute"}}};
    const auto unit = std::find_if(units.begin(), units.end(), [minutes](const Unit &candidate) {
        return minutes % candidate.minutes == 0;
    });
    const qint64 count = minutes / unit->minutes;
    const QString text = QString::number(count) + u' ' + QLatin1String(unit->name);
    return count == 1 ? text : text + u's';
}

QString gigabytes(qint64 mib)
{
    constexpr qint64 perGB = 1024;
    const QString number =
        mib % perGB == 0 ? QString::number(mib / perGB) : NumberText::fixed(double(mib) / perGB, 1);
    return number + QLatin1String(" GB");
}

QString afterFullLabel(qint64 minutes)
{
    return minutes == 0 ? QStringLiteral("Never") : durationLabel(minutes);
}

QString hardCapLabel(qint64 minutes)
{
    return minutes == 0 ? QStringLiteral("No limit") : durationLabel(minutes);
}

QString diskGuardLabel(qint64 gb)
{
    return QString::number(gb) + QLatin1String(" GB");
}

QString roundGrowthLabel(qint64 mib)
{
    const QString size = gigabytes(mib);
    return mib == Settings::roundGrowthMiB.fallback ? size + QLatin1String(" (recommended)") : size;
}

} // namespace tidewick::SettingsChoices
