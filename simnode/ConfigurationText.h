// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <map>

/// The format of a node's configuration and of its validators file: lines under "[section]"
/// headings. Lines are bytes, since they may hold file names.
namespace tidewick::sim::ConfigurationText {

using Sections = std::map<QByteArray, QByteArrayList>;
using Values = std::map<QByteArray, QByteArray>;

/// The lines of each section, trimmed, without comments and empty lines. A "#" begins a comment
/// anywhere, even in a file name, and cannot be escaped. Line endings may be LF or CR LF. A section
/// that appears again is continued.
Sections sections(const QByteArray &text);

/// The lines of the form "key = value" among these. If a key appears twice, the last one wins.
Values values(const QByteArrayList &lines);

} // namespace tidewick::sim::ConfigurationText
