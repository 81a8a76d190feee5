// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/settings/SettingsWindow.h"

#include "desktop/FileBrowser.h"
#include "node/BuildInfo.h"
#include "platform/files/Files.h"
#include "ui/controls/Announcer.h"
#include "ui/controls/Card.h"
#include "ui/controls/CardRow.h"
#include "ui/controls/Picker.h"
#include "ui/controls/PushButton.h"
#include "ui/controls/TextLabel.h"
#include "ui/controls/ToolTip.h"

#include <QDesktopServices>
#include <QVBoxLayout>

namespace tidewick {

namespace {

constexpr int windowWidth = 520;
constexpr int sideMargin = 20;
constexpr int bottomMargin = 16;
/// Headings and footnotes are indented a little from the edge of their card.
constexpr int headingInset = 2;
constexpr int footnoteInset = 4;
constexpr int cardToFootnote = 6;
constexpr int betweenSections = 19;
constexpr int troubleAbove = 12;

const QString whileStopped = QStringLiteral(
    "Tidewick keeps only recent ledgers. New ledgers make its store grow, and each time it has "
    "grown by this much the node trims it back in the background, without stopping. A smaller step "
    "uses less disk and trims more often.");
const QString whileRunning = QStringLiteral("Stop the node to change how often it tidies up.");

} // namespace

SettingsHost::SettingsHost()
    : openUrl(QDesktopServices::openUrl),
      reveal([](const std::filesystem::path &path, QObject *context,
                const std::function<void()> &otherwise) {
          FileBrowser::reveal(QDBusConnection::sessionBus(), path, context, otherwise);
      })
{
}

SettingsWindow::SettingsWindow(NodeController &node, SettingsHost host, QWidget *parent)
    : CardWindow(QStringLiteral("Tidewick Settings"), windowWidth, parent), m_node(node),
      m_host(std::move(host)), m_watch(m_host.defaults), m_announcer(new Announcer(form()))
{
    setMargins(sideMargin, sideMargin, bottomMargin);
    makeRunning();
    makeDiskSpace();
    makeAdvanced();
    m_trouble = addText(TextLabel::Look::Alarm, {}, troubleAbove, footnoteInset);
    m_trouble->hide();

    connect(&m_watch, &DefaultsWatch::changed, this, &SettingsWindow::showStored);
    connect(&m_node, &NodeController::statusChanged, this, &SettingsWindow::followNode);
    showStored();
    followNode();
    fit();
}

void SettingsWindow::makeRunning()
{
    using namespace SettingsChoices;
    Card *card = addCard(QStringLiteral("Running"), 0, headingInset);
    ask(*card, QStringLiteral("Stop after being in sync for"), Settings::autoStopAfterFullMinutes,
        afterFullMinutes, afterFullLabel);
    ask(*card, QStringLiteral("Stop after running for"), Settings::autoStopHardCapMinutes,
        hardCapMinutes, hardCapLabel);
    ask(*card, QStringLiteral("Stop if free disk space falls below"), Settings::diskGuardFreeGB,
        diskGuardGB, diskGuardLabel);
    addFootnote(QStringLiteral("Tidewick follows the XRP Ledger until you stop it; these let it "
                               "stop on its own. Changes apply the next time the node starts."));
}

void SettingsWindow::makeDiskSpace()
{
    using namespace SettingsChoices;
    Card *card = addCard(QStringLiteral("Disk space"), betweenSections, headingInset);
    // Any other store is trimmed in its own way.
    const bool isAsked = BuildInfo::hasMossgrid(m_node.config().buildInfo());
    if (isAsked) {
        m_tidyPicker = ask(*card, QStringLiteral("Tidy up each time the store grows by"),
                           Settings::roundGrowthMiB, roundGrowthMiB, roundGrowthLabel);
    }
    m_storeNow = new TextLabel(TextLabel::Look::Value, {}, card);
    card->add(new CardRow(QStringLiteral("Store now"), m_storeNow, card));
    if (isAsked)
        m_tidyFootnote = addFootnote(whileStopped);
}

void SettingsWindow::makeAdvanced()
{
    Card *card = addCard(QStringLiteral("Advanced"), betweenSections, headingInset);
    const std::filesystem::path &directory = m_node.dataDirectory();

    auto *showButton = new PushButton(QStringLiteral("Show in Finder"), card);
    auto *folder = new CardRow(QStringLiteral("Data folder"), showButton, card);
    ToolTip::set(*folder, Files::display(directory));
    showButton->setAccessibleDescription(Files::display(directory));
    card->add(folder);
    connect(showButton, &PushButton::clicked, this, [this] {
        m_host.reveal(m_node.dataDirectory(), this, [this] { open(m_node.dataDirectory()); });
    });

    auto *viewButton = new PushButton(QStringLiteral("View"), card);
    card->add(new CardRow(QStringLiteral("Node configuration"), viewButton, card));
    connect(viewButton, &PushButton::clicked, this,
            [this] { open(m_node.dataDirectory() / "xrpld.cfg"); });

    addFootnote(QStringLiteral(
        "The ledger store, logs and the node's configuration live in the data folder. Tidewick "
        "writes the configuration from these settings each time the node starts, so edits to the "
        "file are replaced."));
}

Picker *SettingsWindow::ask(Card &card, const QString &title, const Setting &setting,
                            const QList<qint64> &values, const SettingsChoices::Label &label)
{
    auto *picker = new Picker(title, &card);
    card.add(new CardRow(title, picker, &card));
    connect(picker, &Picker::picked, this,
            [this, setting](qint64 value) { store(setting, value); });
    m_questions.push_back({setting, values, label, picker});
    return picker;
}

TextLabel *SettingsWindow::addFootnote(const QString &text)
{
    return addText(TextLabel::Look::Footnote, text, cardToFootnote, footnoteInset);
}

void SettingsWindow::showWhatApplies()
{
    for (const Question &question : m_questions) {
        const qint64 applies = question.setting.read(m_host.defaults);
        if (question.setting.stored(m_host.defaults) != applies)
            store(question.setting, applies);
    }
}

void SettingsWindow::showEvent(QShowEvent *event)
{
    m_host.defaults.refresh();
    showWhatApplies();
    CardWindow::showEvent(event);
}

void SettingsWindow::store(const Setting &setting, qint64 value)
{
    const bool stored = m_host.defaults.setInteger(setting.key, value);
    tell(stored
             ? QString()
             : QStringLiteral(
                   "The settings cannot be stored in %1. Your choices apply until Tidewick quits.")
                   .arg(Files::display(m_host.defaults.file())));
    showStored();
}

void SettingsWindow::showStored()
{
    for (const Question &question : m_questions) {
        const qint64 stored = question.setting.stored(m_host.defaults);
        question.picker->offer(SettingsChoices::choices(question.values, stored, question.label),
                               stored);
    }
}

void SettingsWindow::followNode()
{
    const NodeStatus &status = m_node.status();
    m_storeNow->setWholeText(status.storeSize + QStringLiteral(" · ") + status.freeSpace);
    if (!m_tidyPicker)
        return;
    // Qt would pass the focus on, and the next key press would go to the neighbouring control.
    if (status.hasProcess && m_tidyPicker->hasFocus())
        form()->setFocus();
    m_tidyPicker->setEnabled(!status.hasProcess);
    m_tidyFootnote->setWholeText(status.hasProcess ? whileRunning : whileStopped);
}

void SettingsWindow::open(const std::filesystem::path &path)
{
    tell(m_host.openUrl(FileBrowser::url(path))
             ? QString()
             : QStringLiteral("No program on this desktop opens %1.").arg(Files::display(path)));
}

void SettingsWindow::tell(const QString &trouble)
{
    m_trouble->setWholeText(trouble);
    m_trouble->setVisible(!trouble.isEmpty());
    fit();
    if (trouble.isEmpty())
        return;
    ensureVisible(m_trouble);
    m_announcer->say(trouble);
}

} // namespace tidewick
