// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/FreeArea.h"

#include <QScreen>
#include <QWidget>

namespace tidewick {

namespace {

/// The height of a title bar.
constexpr int usualFrame = 40;

} // namespace

QSize freeArea(const QWidget &window)
{
    const QSize frame = (window.frameGeometry().size() - window.size()).expandedTo({0, usualFrame});
    return (window.screen()->availableSize() - frame).expandedTo({1, 1});
}

} // namespace tidewick
