// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <map>

/// The form that a node's configuration and its validators file share: lines under "[section]"
/// headings. Bytes, since lines may hold file names.
namespace tidewick::sim::ConfigurationText {

using Sections = std::map<QByteArray, QByteArrayList>;
using Values = std::map<QByteArray, QByteArray>;

/// The lines of each section, without comments, the blanks around them and empty lines. A "#"
/// begins a comment wherever it stands, in a file name as well, and nothing escapes it. Line ends
/// may be LF or CR LF. A section that comes again is continued.
Sections sections(const QByteArray &text);

/// The lines of the form "key = value" among these; of equal keys the last counts.
Values values(const QByteArrayList &lines);

} // namespace tidewick::sim::ConfigurationText
