// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace tidewick::PanelTexts {

/// The accessible description of a figure that the node no longer updates.
inline QString oldFigure()
{
    return QStringLiteral("Not current: the node no longer updates this");
}

} // namespace tidewick::PanelTexts
