// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/TrayItem.h"

#include "platform/DisplayText.h"

#include <QAction>
#include <QBitArray>
#include <QTextDocument>

namespace tidewick {

namespace {

/// A longer row makes a menu wider than is of use.
constexpr qsizetype mostCharacters = 120;
constexpr qsizetype mostToolTipCharacters = 500;

} // namespace

TrayItem::TrayItem(Drawing drawing, const QIcon &icon, const QList<MenuRow> &rows,
                   const QString &toolTip)
    : m_drawing(drawing), m_icon(icon)
{
    m_menu.setToolTipsVisible(true);
    for (int place = 0; place < menuPlaceCount; ++place)
        addAction(MenuPlace(place));
    setRows(rows);
    setToolTip(toolTip);
    // A host reads the menu when the item appears.
    m_icon.setContextMenu(&m_menu);
    m_icon.show();
}

void TrayItem::addAction(MenuPlace place)
{
    auto *action = new QAction(&m_menu);
    action->setVisible(false);
    connect(action, &QAction::triggered, this,
            [this, place] { emit commandChosen(m_commands[std::size_t(place)]); });
    m_menu.addAction(action);
    m_actions[std::size_t(place)] = action;
}

void TrayItem::setRows(const QList<MenuRow> &rows)
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

/// The setters of QAction tell nobody where nothing changes.
void TrayItem::setRow(QAction &action, const MenuRow &row)
{
    const QString line = DisplayText::singleLine(row.text);
    const QString text = DisplayText::elided(line, mostCharacters);
    action.setSeparator(row.kind == MenuRow::Kind::Separator);
    action.setText(escaped(text));
    action.setToolTip(
        text == line ? QString() : plainToolTip(DisplayText::elided(line, mostToolTipCharacters)));
    action.setEnabled(row.kind == MenuRow::Kind::Command && row.enabled);
    action.setVisible(true);
}

/// An ampersand marks the next character as the key to press. On the bus an underscore does; Qt
/// writes one for the first ampersand and leaves all else as it is.
QString TrayItem::escaped(const QString &text) const
{
    QString escaped = text;
    if (m_drawing == Drawing::ByUs)
        return escaped.replace(u'&', QLatin1String("&&"));
    escaped.replace(u'_', QLatin1String("__"));
    if (const qsizetype first = escaped.indexOf(u'&'); first >= 0)
        escaped.insert(first, u'&');
    return escaped;
}

QString TrayItem::plainToolTip(const QString &text) const
{
    // Qt's own tool tips guess whether a text is markup.
    if (m_drawing == Drawing::ByUs && Qt::mightBeRichText(text))
        return QLatin1String("<span>") + text.toHtmlEscaped() + QLatin1String("</span>");
    return text;
}

void TrayItem::setIcon(const QIcon &icon)
{
    if (m_icon.icon().cacheKey() != icon.cacheKey())
        m_icon.setIcon(icon);
}

void TrayItem::setToolTip(const QString &text)
{
    const QString shown =
        plainToolTip(DisplayText::elided(DisplayText::singleLine(text), mostToolTipCharacters));
    if (m_icon.toolTip() != shown)
        m_icon.setToolTip(shown);
}

} // namespace tidewick
