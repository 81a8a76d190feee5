// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/icon/ApplicationIcon.h"

#include "desktop/SingleInstance.h"
#include "platform/files/Bundle.h"
#include "platform/files/Files.h"

namespace tidewick {

QIcon applicationIcon()
{
    const auto own = Bundle::main().resource("AppIcon", "svg");
    return QIcon::fromTheme(QLatin1String(SingleInstance::name),
                            own ? QIcon(Files::display(*own)) : QIcon());
}

} // namespace tidewick
