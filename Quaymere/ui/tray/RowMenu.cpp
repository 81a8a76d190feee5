// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/tray/RowMenu.h"

#include "platform/text/DisplayText.h"
#include "ui/controls/ControlPalette.h"
#include "ui/controls/Popups.h"
#include "ui/controls/ToolTip.h"

#include <QBitArray>
#include <QStyleOptionMenuItem>

namespace tidewick {

namespace {

/// Longer rows would make the menu impractically wide.
constexpr qsizetype mostCharacters = 120;

} // namespace

RowMenu::RowMenu(Drawing drawing) : m_drawing(drawing)
{
    setToolTipsVisible(true);
    for (int place = 0; place < menuPlaceCount; ++place)
        addPlace(MenuPlace(place));
    if (m_drawing == Drawing::ByHost)
        return;
    QFont bold = font();
    bold.setWeight(QFont::DemiBold);
    m_actions[std::size_t(MenuPlace::Title)]->setFont(bold);
    setScheme({});
    Popups::dress(*this);
}

void RowMenu::setScheme(Scheme scheme)
{
    setPalette(controlPalette(scheme));
}

void RowMenu::addPlace(MenuPlace place)
{
    auto *action = new QAction(this);
    action->setVisible(false);
    connect(action, &QAction::triggered, this,
            [this, place] { emit commandChosen(m_commands[std::size_t(place)]); });
    addAction(action);
    m_actions[std::size_t(place)] = action;
}

void RowMenu::setRows(const QList<MenuRow> &rows)
{
    QBitArray shown(menuPlaceCount);
    for (const MenuRow &row : rows) {
        shown.setBit(int(row.place));
        m_commands[std::size_t(row.place)] = row.command;
        setRow(*m_actions[std::size_t(row.place)], row);
    }
    for (int place = 0; place < menuPlaceCount; ++place) {
        if (!shown.testBit(place))
            m_actions[std::size_t(place)]->setVisible(false);
    }
}

/// Changes the action to match the row. QAction's setters send no notification if nothing changes.
void RowMenu::setRow(QAction &action, const MenuRow &row) const
{
    const QString line = DisplayText::singleLine(row.text);
    const QString text = DisplayText::elided(line, mostCharacters);
    action.setSeparator(row.kind == MenuRow::Kind::Separator);
    action.setData(row.kind == MenuRow::Kind::Text);
    action.setText(escaped(text));
    action.setToolTip(text == line ? QString() : ToolTip::plain(row.text));
    action.setEnabled(row.kind == MenuRow::Kind::Command && row.enabled);
    action.setVisible(true);
}

/// Texts are disabled because they cannot be chosen, but there to be read: only commands fade.
void RowMenu::initStyleOption(QStyleOptionMenuItem *option, const QAction *action) const
{
    QMenu::initStyleOption(option, action);
    if (!action->data().toBool())
        return;
    const bool isTitle = action == m_actions[std::size_t(MenuPlace::Title)];
    const auto role = isTitle ? QPalette::WindowText : QPalette::Text;
    option->palette.setColor(QPalette::Disabled, QPalette::ButtonText,
                             option->palette.color(QPalette::Active, role));
}

/// Escapes the mnemonic markers of a text. Qt marks a mnemonic with an ampersand, the bus with an
/// underscore; Qt writes an underscore for the first ampersand and leaves everything else
/// unchanged.
QString RowMenu::escaped(QString text) const
{
    if (m_drawing == Drawing::ByUs)
        return text.replace(u'&', QLatin1String("&&"));
    text.replace(u'_', QLatin1String("__"));
    if (const qsizetype first = text.indexOf(u'&'); first >= 0)
        text.insert(first, u'&');
    return text;
}

} // namespace tidewick
