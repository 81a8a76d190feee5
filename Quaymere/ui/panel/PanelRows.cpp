// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/panel/PanelRows.h"

#include "ui/controls/Announcer.h"
#include "ui/panel/PanelButton.h"
#include "ui/panel/PanelIcon.h"
#include "ui/panel/PanelLabel.h"
#include "ui/panel/PanelLine.h"
#include "ui/panel/PanelMetrics.h"

namespace tidewick {

PanelRows::PanelRows(QWidget *parent)
    : QWidget(parent), m_icon(new PanelIcon(this)), m_hintLine(new PanelLine(this)),
      m_hint(new PanelLabel(QPalette::PlaceholderText,
                            PanelMetrics::textMargin - PanelMetrics::fillMargin,
                            PanelMetrics::figurePadding, this)),
      m_announcer(new Announcer(this))
{
    m_hintLine->hide();
    m_hint->hide();
    setFonts();
}

void PanelRows::setRows(const QList<MenuRow> &rows)
{
    Rows wanted;
    for (const MenuRow &row : rows)
        wanted[size_t(row.place)] = row;

    const Place focused = focusedCommand();
    const QString news = this->news(wanted);
    bool changed = false;
    for (int place = 0; place < menuPlaceCount; ++place) {
        if (m_slots[size_t(place)].row == wanted[size_t(place)])
            continue;
        setRow(place, wanted[size_t(place)]);
        changed = true;
    }
    if (!changed)
        return;
    if (focused)
        restoreFocus(focused);
    emit heightChanged();
    if (!news.isEmpty())
        m_announcer->say(news);
}

/// What a screen reader should say about these rows: a new phase, advice that appears, and what has
/// become of the focused command. Figures can wait until they are asked for.
QString PanelRows::news(const Rows &wanted) const
{
    QStringList news;
    const auto before = [this](MenuPlace place) { return slot(place).row; };
    const auto after = [&wanted](MenuPlace place) { return wanted[size_t(place)]; };
    const auto title = after(MenuPlace::Title);
    if (title && before(MenuPlace::Title) && title != before(MenuPlace::Title)) {
        news += title->text;
        if (const auto detail = after(MenuPlace::Detail))
            news += detail->text;
    }
    if (const auto advice = after(MenuPlace::Advice); advice && !before(MenuPlace::Advice))
        news += advice->text;
    if (const Place focused = focusedCommand()) {
        const auto command = after(MenuPlace(*focused));
        if (command && command->command != before(MenuPlace(*focused))->command)
            news += command->text;
    }
    return news.join(QLatin1String(", "));
}

void PanelRows::setIcon(const QIcon &icon)
{
    if (icon.cacheKey() == m_iconKey)
        return;
    m_iconKey = icon.cacheKey();
    m_icon->setIcon(icon);
    emit heightChanged();
}

void PanelRows::setHint(const QString &hint)
{
    if (hint == m_hintText)
        return;
    m_hintText = hint;
    m_hint->setWholeText(hint);
    m_hintLine->setVisible(!hint.isEmpty());
    m_hint->setVisible(!hint.isEmpty());
    emit heightChanged();
}

QWidget *PanelRows::Slot::shown() const
{
    if (!row)
        return nullptr;
    switch (row->kind) {
    case MenuRow::Kind::Text:
        return label;
    case MenuRow::Kind::Separator:
        return line;
    case MenuRow::Kind::Command:
        return button;
    }
    Q_UNREACHABLE();
}

void PanelRows::setRow(int place, const std::optional<MenuRow> &row)
{
    Slot &slot = m_slots[size_t(place)];
    QWidget *before = slot.shown();
    slot.row = row;
    // Hiding or disabling the focused widget would pass the focus on to the next one.
    if (before && before == window()->focusWidget()
        && (!row || !row->enabled || slot.shown() != before))
        setFocus(Qt::OtherFocusReason);
    if (row && row->kind == MenuRow::Kind::Text) {
        if (!slot.label)
            slot.label = makeLabel(row->place);
        slot.label->setWholeText(row->text);
        slot.label->setOld(row->old);
    } else if (row && row->kind == MenuRow::Kind::Command) {
        if (!slot.button)
            slot.button = makeButton(slot);
        slot.button->setWholeText(row->text);
        if (slot.namedCommand != row->command)
            slot.button->nameAnew();
        slot.namedCommand = row->command;
        slot.button->setOld(row->old);
        slot.button->setChoosable(row->enabled);
    } else if (row && !slot.line) {
        slot.line = new PanelLine(this);
    }
    QWidget *after = slot.shown();
    if (before && before != after)
        before->hide();
    if (after && after != before)
        after->show();
}

PanelLabel *PanelRows::makeLabel(MenuPlace place)
{
    using namespace PanelMetrics;
    PanelLabel *label = nullptr;
    switch (place) {
    case MenuPlace::Title:
        label = new PanelLabel(QPalette::WindowText, 0, 0, this);
        break;
    case MenuPlace::Detail:
        label = new PanelLabel(QPalette::PlaceholderText, 0, 0, this);
        break;
    case MenuPlace::Advice:
        label = new PanelLabel(QPalette::WindowText, adviceMargin, advicePadding, this);
        label->setFramed();
        break;
    case MenuPlace::Ledger:
        // As high as the command that it becomes, so that nothing below it moves when it does.
        label = new PanelLabel(QPalette::Text, textMargin - fillMargin, commandPadding, this);
        break;
    default:
        label = new PanelLabel(QPalette::Text, textMargin - fillMargin, figurePadding, this);
    }
    slot(place).label = label;
    setFonts();
    return label;
}

PanelButton *PanelRows::makeButton(Slot &slot)
{
    auto *button = new PanelButton(this);
    connect(button, &PanelButton::pressed, this, [&slot] { slot.pressed = slot.row->command; });
    connect(button, &PanelButton::clicked, this, [this, &slot] {
        if (slot.row && slot.row->command == slot.pressed)
            emit commandChosen(slot.pressed);
    });
    return button;
}

} // namespace tidewick
