// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/Windows.h"

#include "platform/files/Bundle.h"
#include "ui/about/AboutWindow.h"
#include "ui/controls/Appearance.h"
#include "ui/controls/BringForward.h"
#include "ui/controls/FreeArea.h"
#include "ui/controls/TextScale.h"
#include "ui/ledger/LedgerWindow.h"
#include "ui/settings/SettingsWindow.h"

#include <QShortcut>

namespace tidewick {

namespace {

/// Makes a window follow the desktop's appearance, now and whenever it changes.
template <typename Window>
Window *following(const Appearance &appearance, Window *window)
{
    const auto follow = [&appearance, window] { window->setScheme(appearance.scheme()); };
    QObject::connect(&appearance, &Appearance::changed, window, follow);
    follow();
    return window;
}

} // namespace

Windows::Windows(NodeController &node, const Appearance &appearance, OpenUrl openUrl)
    : m_appearance(appearance)
{
    m_scenes[QStringLiteral("settings")].make = [this, &node, openUrl] {
        SettingsHost host;
        host.openUrl = openUrl;
        return following(m_appearance, new SettingsWindow(node, std::move(host)));
    };
    m_scenes[QStringLiteral("ledger")].make = [this, open = std::move(openUrl)] {
        return makeLedger(open);
    };
    // Read now: an upgrade may replace the bundle's files while the program keeps running.
    m_scenes[QStringLiteral("about")].make = [this, &node, version = Bundle::main().version()] {
        return following(m_appearance, new AboutWindow(node, version));
    };
}

Windows::~Windows()
{
    for (auto &[identifier, scene] : m_scenes)
        delete scene.window;
}

QWidget *Windows::makeLedger(const OpenUrl &openUrl)
{
    auto *window = following(m_appearance, new LedgerWindow(openUrl));
    const auto follow = [this, window] { window->setStill(m_appearance.isStill()); };
    connect(&m_appearance, &Appearance::changed, window, follow);
    follow();
    const QSize usual(TextScale::scaled(window->font(), 800),
                      TextScale::scaled(window->font(), 780));
    window->resize(usual.boundedTo(freeArea(*window)));
    new QShortcut(QKeySequence::Cancel, window, window, &QWidget::close);
    return window;
}

void Windows::open(const QString &identifier)
{
    Scene &scene = m_scenes.at(identifier);
    // A window that has just been closed is about to be deleted.
    if (!scene.window || !scene.window->isVisible()) {
        scene.window = scene.make();
        scene.window->setObjectName(identifier);
        scene.window->setAttribute(Qt::WA_DeleteOnClose);
        new QShortcut(QKeySequence::Close, scene.window.data(), scene.window.data(),
                      &QWidget::close);
    }
    bringForward(*scene.window);
}

QWidget *Windows::window(const QString &identifier) const
{
    return m_scenes.at(identifier).window;
}

} // namespace tidewick
