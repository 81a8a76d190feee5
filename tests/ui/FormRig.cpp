// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/FormRig.h"

#include "platform/files/Files.h"
#include "ui/controls/TextLabel.h"

#include <QtTest>

namespace tidewick {

void showActive(QWidget &window)
{
    window.show();
    window.activateWindow();
    if (!QTest::qWaitForWindowActive(&window))
        qFatal("The window does not become active");
}

QStringList shownTexts(const QWidget &window)
{
    QMap<std::pair<int, int>, QString> texts;
    for (const TextLabel *text : window.findChildren<TextLabel *>()) {
        const QPoint place = text->mapTo(&window, text->rect().center());
        if (text->isVisibleTo(&window))
            texts.insert({place.y(), place.x()}, text->text());
    }
    return texts.values();
}

QAbstractButton *button(const QWidget &window, const char *name)
{
    for (auto *button : window.findChildren<QAbstractButton *>()) {
        if (button->text() == QLatin1String(name))
            return button;
    }
    qFatal("There is no button '%s'", name);
}

SettingsRig::SettingsRig(const QByteArray &settings) : defaults(node.defaults())
{
    if (!settings.isEmpty())
        writeSettings(settings);
    defaults.refresh();
    SettingsHost host;
    host.defaults = defaults;
    host.openUrl = [this](const QUrl &url) {
        opened.append(url);
        return opens;
    };
    host.reveal = [this](const std::filesystem::path &path, QObject *,
                         const std::function<void()> &otherwise) {
        revealed.append(path);
        if (!reveals)
            otherwise();
    };
    window = std::make_unique<SettingsWindow>(node.node(), host);
    showActive(*window);
}

Picker *SettingsRig::picker(Question question) const
{
    return window->findChildren<Picker *>().at(question);
}

QStringList SettingsRig::entries(Question question) const
{
    QStringList entries;
    for (int i = 0; i < picker(question)->count(); ++i)
        entries.append(picker(question)->itemText(i));
    return entries;
}

void SettingsRig::key(Qt::Key key) const
{
    QTest::keyClick(window->windowHandle(), key);
}

void SettingsRig::writeSettings(const QByteArray &settings) const
{
    std::filesystem::create_directories(defaults.file().parent_path());
    Files::writeAtomically(defaults.file(), "[General]\n" + settings);
}

} // namespace tidewick
