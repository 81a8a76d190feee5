// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/CardWindow.h"

#include "ui/controls/Card.h"
#include "ui/controls/ControlPalette.h"
#include "ui/controls/TextScale.h"

#include <QKeyEvent>
#include <QVBoxLayout>

namespace tidewick {

namespace {

constexpr int headingToCard = 7;

} // namespace

CardWindow::CardWindow(const QString &title, int width, QWidget *parent)
    : CardWindow(new QWidget, title, width, parent)
{
}

CardWindow::CardWindow(QWidget *form, const QString &title, int width, QWidget *parent)
    : FittedWindow(form, parent), m_width(width), m_form(form), m_column(new QVBoxLayout(form))
{
    setWindowTitle(title);
    setPalette(controlPalette(m_scheme));
    m_column->setSpacing(0);
    form->installEventFilter(this);
}

void CardWindow::setScheme(Scheme scheme)
{
    if (scheme == m_scheme)
        return;
    m_scheme = scheme;
    setPalette(controlPalette(scheme));
}

int CardWindow::points(int measure) const
{
    return TextScale::scaled(font(), measure);
}

void CardWindow::setMargins(int sides, int top, int bottom)
{
    m_column->setContentsMargins(points(sides), points(top), points(sides), points(bottom));
}

TextLabel *CardWindow::addText(TextLabel::Look look, const QString &text, int spaceAbove, int inset)
{
    auto *label = new TextLabel(look, text, m_form);
    label->setContentsMargins(points(inset), points(spaceAbove), points(inset), 0);
    m_column->addWidget(label);
    return label;
}

Card *CardWindow::addCard(const QString &heading, int spaceAbove, int inset)
{
    addText(TextLabel::Look::Heading, heading, spaceAbove, inset);
    m_column->addSpacing(points(headingToCard));
    auto *card = new Card(m_form);
    card->setAccessibleName(heading);
    m_column->addWidget(card);
    return card;
}

int CardWindow::wantedWidth() const
{
    return std::max(m_width, m_column->sizeHint().width());
}

void CardWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Cancel) || event->matches(QKeySequence::Close))
        close();
    else
        FittedWindow::keyPressEvent(event);
}

bool CardWindow::eventFilter(QObject *object, QEvent *event)
{
    if (object == m_form && event->type() == QEvent::LayoutRequest)
        fit();
    return FittedWindow::eventFilter(object, event);
}

} // namespace tidewick
