// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/controls/Picker.h"

#include <QList>
#include <QString>

#include <functional>

// The values that the settings window offers for each setting, and their labels.

namespace tidewick::SettingsChoices {

using Label = std::function<QString(qint64)>;

inline const QList<qint64> afterFullMinutes{0, 30, 60, 240, 1440};
inline const QList<qint64> hardCapMinutes{0, 60, 240, 720, 1440, 10080};
inline const QList<qint64> diskGuardGB{5, 10, 20, 50};
inline const QList<qint64> roundGrowthMiB{512, 1024, 2048, 4096, 8192, 16384};

/// Returns the values with their labels. A current value that is not among them, because it reached
/// the store by other means, is sorted in.
QList<Choice> choices(QList<qint64> values, qint64 current, const Label &label);

/// Formats a duration in the largest unit that divides it: "30 minutes", "1 hour", "2 days", "1
/// week".
QString durationLabel(qint64 minutes);

/// Formats MiB as GB of 2^30 bytes: "2 GB", "0.5 GB".
QString gigabytes(qint64 mib);

QString afterFullLabel(qint64 minutes);
QString hardCapLabel(qint64 minutes);
QString diskGuardLabel(qint64 gb);
QString roundGrowthLabel(qint64 mib);

} // namespace tidewick::SettingsChoices
