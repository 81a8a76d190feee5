// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "node/NodeController.h"
#include "node/Settings.h"
#include "platform/files/DefaultsWatch.h"
#include "ui/controls/CardWindow.h"
#include "ui/settings/SettingsChoices.h"

#include <QUrl>

#include <functional>
#include <vector>

namespace tidewick {

class Announcer;
class Card;
class Picker;

/// The services that the settings window needs from its host. The defaults are the real ones; tests
/// substitute their own.
struct SettingsHost
{
    SettingsHost();

    Defaults defaults = Defaults::standard();

    /// Opens a file or folder with the desktop's program for it. Returns false if there is none.
    std::function<bool(const QUrl &)> openUrl;

    /// FileBrowser::reveal on the session bus.
    std::function<void(const std::filesystem::path &, QObject *context,
                       const std::function<void()> &otherwise)>
        reveal;
};

/// The "Tidewick Settings" window. A choice is stored as soon as it is picked and applies from the
/// next start of the node. Changes that others make to the store are shown as they arrive. Owned by
/// the application, which destroys it before the controller; main thread only.
class SettingsWindow final : public CardWindow
{
    Q_OBJECT

public:
    explicit SettingsWindow(NodeController &node, SettingsHost host = SettingsHost(),
                            QWidget *parent = nullptr);

    /// Corrects stored values that are out of range, so that the pickers show the values that the
    /// node will use. Called each time the window is shown.
    void showWhatApplies();

protected:
    void showEvent(QShowEvent *event) override;

private:
    struct Question
    {
        Setting setting;
        QList<qint64> values;
        SettingsChoices::Label label;
        Picker *picker;
    };

    void makeRunning();
    void makeDiskSpace();
    void makeAdvanced();
    Picker *ask(Card &card, const QString &title, const Setting &setting,
                const QList<qint64> &values, const SettingsChoices::Label &label);
    TextLabel *addFootnote(const QString &text);

    void store(const Setting &setting, qint64 value);
    void showStored();
    void followNode();
    void open(const std::filesystem::path &path);
    void tell(const QString &trouble);

    NodeController &m_node;
    SettingsHost m_host;
    DefaultsWatch m_watch;
    std::vector<Question> m_questions;
    /// Null if the store is trimmed in another way.
    Picker *m_tidyPicker = nullptr;
    TextLabel *m_tidyFootnote = nullptr;
    TextLabel *m_storeNow = nullptr;
    TextLabel *m_trouble = nullptr;
    Announcer *m_announcer;
};

} // namespace tidewick
