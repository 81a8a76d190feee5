// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/FormWindow.h"

#include "ui/FormCard.h"
#include "ui/FormPalette.h"
#include "ui/TextScale.h"

#include <QKeyEvent>
#include <QVBoxLayout>

namespace tidewick {

namespace {

/// Headings are set in a little from the edge of their card.
constexpr int headingInset = 2;
constexpr int headingToCard = 7;

} // namespace

FormWindow::FormWindow(const QString &title, int width, QWidget *parent)
    : FormWindow(new QWidget, title, width, parent)
{
}

FormWindow::FormWindow(QWidget *form, const QString &title, int width, QWidget *parent)
    : FittedWindow(form, parent), m_width(width), m_form(form), m_column(new QVBoxLayout(form))
{
    setWindowTitle(title);
    setPalette(formPalette(m_dark));
    m_column->setSpacing(0);
    form->installEventFilter(this);
}

void FormWindow::setDark(bool dark)
{
    if (dark == m_dark)
        return;
    m_dark = dark;
    setPalette(formPalette(dark));
}

int FormWindow::points(int measure) const
{
    return TextScale::scaled(font(), measure);
}

void FormWindow::setMargins(int sides, int top, int bottom)
{
    m_column->setContentsMargins(points(sides), points(top), points(sides), points(bottom));
}

FormText *FormWindow::addText(FormText::Look look, const QString &text, int spaceAbove, int inset)
{
    auto *label = new FormText(look, text, m_form);
    label->setContentsMargins(points(inset), points(spaceAbove), points(inset), 0);
    m_column->addWidget(label);
    return label;
}

FormCard *FormWindow::addCard(const QString &heading, int spaceAbove)
{
    addText(FormText::Look::Heading, heading, spaceAbove, headingInset);
    m_column->addSpacing(points(headingToCard));
    auto *card = new FormCard(m_form);
    card->setAccessibleName(heading);
    m_column->addWidget(card);
    return card;
}

int FormWindow::wantedWidth() const
{
    return std::max(m_width, m_column->sizeHint().width());
}

void FormWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Cancel) || event->matches(QKeySequence::Close))
        close();
    else
        FittedWindow::keyPressEvent(event);
}

bool FormWindow::eventFilter(QObject *object, QEvent *event)
{
    if (object == m_form && event->type() == QEvent::LayoutRequest)
        fit();
    return FittedWindow::eventFilter(object, event);
}

} // namespace tidewick
