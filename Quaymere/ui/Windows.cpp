// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/Windows.h"

#include "ui/Appearance.h"
#include "ui/LedgerWindow.h"

#include <QLabel>
#include <QVBoxLayout>

namespace tidewick {

namespace {

/// A window of one line, as large as that line asks for.
QWidget *makeLine(const QString &title, const QString &line)
{
    auto *window = new QWidget;
    window->setWindowTitle(title);
    auto *layout = new QVBoxLayout(window);
    layout->setContentsMargins(32, 28, 32, 28);
    auto *label = new QLabel(line, window);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    layout->addWidget(label);
    return window;
}

QWidget *makeFixed(const QString &title, const QString &line)
{
    QWidget *window = makeLine(title, line);
    window->layout()->setSizeConstraint(QLayout::SetFixedSize);
    return window;
}

} // namespace

Windows::Windows(const Appearance &appearance, OpenUrl openUrl)
    : m_appearance(appearance), m_openUrl(std::move(openUrl))
{
    m_scenes[QStringLiteral("settings")].make = [] {
        return makeFixed(QStringLiteral("Tidewick Settings"),
                         QStringLiteral("Settings are kept in settings.ini for now."));
    };
    m_scenes[QStringLiteral("ledger")].make = [this] { return makeLedger(); };
    m_scenes[QStringLiteral("about")].make = [] {
        return makeFixed(QStringLiteral("About Tidewick"),
                         QStringLiteral("Tidewick runs an XRP Ledger node on your machine."));
    };
}

Windows::~Windows()
{
    for (auto &[identifier, scene] : m_scenes)
        delete scene.window;
}

QWidget *Windows::makeLedger()
{
    auto *window = new LedgerWindow(m_openUrl);
    const auto follow = [this, window] {
        window->setDark(m_appearance.isDark());
        window->setStill(m_appearance.isStill());
    };
    connect(&m_appearance, &Appearance::changed, window, follow);
    follow();
    window->resize(800, 780);
    return window;
}

void Windows::open(const QString &identifier)
{
    Scene &scene = m_scenes.at(identifier);
    // One that has just been closed is about to go.
    if (!scene.window || !scene.window->isVisible()) {
        scene.window = scene.make();
        scene.window->setObjectName(identifier);
        scene.window->setAttribute(Qt::WA_DeleteOnClose);
    }
    bringForward(*scene.window);
}

QWidget *Windows::window(const QString &identifier) const
{
    return m_scenes.at(identifier).window;
}

void Windows::bringForward(QWidget &window)
{
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace tidewick
