// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/dialogs/Dialog.h"

#include "ui/controls/BringForward.h"
#include "ui/controls/ControlMetrics.h"
#include "ui/controls/ControlPaint.h"
#include "ui/controls/PushButton.h"
#include "ui/controls/TextScale.h"
#include "ui/dialogs/AdviceBox.h"
#include "ui/dialogs/DialogMark.h"
#include "ui/dialogs/LogCard.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScreen>

#include <algorithm>

namespace tidewick {

namespace {

// In points for text of 10 points.
constexpr int sideMargin = 24;
constexpr int topMargin = 27;
constexpr int bottomMargin = 24;
/// The mark is indented a little. In its square, its upper wave is level with the headline.
constexpr int markInset = 4;
constexpr int markToText = 19;
constexpr int aboveText = 10;
constexpr int aboveLog = 14;
constexpr int aboveAdvice = 12;
constexpr int aboveButtons = 20;
constexpr int betweenButtons = 10;
constexpr int buttonWidth = 84;
constexpr int buttonHeight = 32;
constexpr int haloWidth = 3;

/// The fraction of the screen's height that the log may occupy.
constexpr double mostOfScreen = 0.6;

/// A button in the size that suits a dialog.
class DialogButton final : public PushButton
{
public:
    using PushButton::PushButton;

    QSize sizeHint() const override
    {
        return PushButton::sizeHint().expandedTo(
            {TextScale::scaled(font(), buttonWidth), TextScale::scaled(font(), buttonHeight)});
    }
};

/// Screen readers announce windows with this role when they open.
QAccessibleInterface *makeAccessible(const QString &, QObject *object)
{
    auto *dialog = qobject_cast<Dialog *>(object);
    return dialog ? new QAccessibleWidget(dialog, QAccessible::Dialog) : nullptr;
}

} // namespace

Dialog::Dialog(const SquareStatusImage &mark, int width)
    : CardWindow(QStringLiteral("Tidewick"), width, nullptr), m_leastWidth(width)
{
    QAccessible::installFactory(makeAccessible);
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint
                   | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    setAttribute(Qt::WA_DeleteOnClose);
    setMargins(sideMargin, topMargin, bottomMargin);
    makeHeader(mark);
    makeParts();
    connect(qApp, &QApplication::focusChanged, form(), qOverload<>(&QWidget::update));
}

void Dialog::makeHeader(const SquareStatusImage &mark)
{
    auto *header = new QWidget(form());
    auto *sign = new DialogMark(mark, header);
    sign->setContentsMargins(points(markInset), 0, 0, 0);
    m_headline = new TextLabel(TextLabel::Look::Message, {}, header);
    m_text = new TextLabel(TextLabel::Look::Paragraph, {}, header);
    m_text->setContentsMargins(0, points(aboveText), 0, 0);
    m_lines = new QVBoxLayout;
    m_lines->setSpacing(0);
    m_lines->addWidget(m_headline);
    m_lines->addWidget(m_text);
    auto *layout = new QHBoxLayout(header);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(points(markToText));
    layout->addWidget(sign, 0, Qt::AlignTop);
    layout->addLayout(m_lines, 1);
    column().addWidget(header);
}

void Dialog::makeParts()
{
    m_log = new LogCard(form());
    m_log->setContentsMargins(0, points(aboveLog), 0, 0);
    column().addWidget(m_log);
    m_advice = new AdviceBox(form());
    m_advice->setContentsMargins(0, points(aboveAdvice), 0, 0);
    column().addWidget(m_advice);
    m_buttons = new QHBoxLayout;
    m_buttons->setContentsMargins(0, points(aboveButtons), 0, 0);
    m_buttons->setSpacing(points(betweenButtons));
    m_buttons->addStretch();
    column().addLayout(m_buttons);
}

void Dialog::setMessage(const Message &message)
{
    m_headline->setWholeText(message.headline);
    setAccessibleName(message.headline);
    m_text->setWholeText(message.text);
    m_text->setHidden(message.text.isEmpty());
    m_log->setText(message.log);
    m_log->setTextName(message.headline);
    m_log->setHidden(message.log.isEmpty());
    m_advice->setText(message.advice);
    m_advice->setHidden(message.advice.isEmpty());
}

void Dialog::addLine(TextLabel::Look look, const QString &text, int spaceAbove)
{
    auto *line = new TextLabel(look, text, m_headline->parentWidget());
    line->setContentsMargins(0, points(spaceAbove), 0, 0);
    m_lines->addWidget(line);
}

PushButton *Dialog::addButtonAtStart(const QString &text)
{
    return addButton(text, 0);
}

PushButton *Dialog::addButtonAtEnd(const QString &text)
{
    return addButton(text, m_buttons->count());
}

PushButton *Dialog::addButton(const QString &text, int position)
{
    auto *button = new DialogButton(text, form());
    m_buttons->insertWidget(position, button);
    return button;
}

void Dialog::setDefaultButton(PushButton *button)
{
    m_default = button;
    button->setFocus();
}

void Dialog::present()
{
    setAccessibleDescription(description());
    fit();
    bringForward(*this);
}

void Dialog::accept()
{
    m_isAccepted = true;
    close();
}

/// All texts but the headline, which is the dialog's name, and the log, which is read by itself.
QString Dialog::description() const
{
    QStringList texts;
    for (const TextLabel *line : form()->findChildren<TextLabel *>()) {
        if (line != m_headline && !line->text().isEmpty())
            texts += line->text();
    }
    return texts.join(u' ');
}

int Dialog::wantedWidth() const
{
    return std::max(points(m_leastWidth), CardWindow::wantedWidth());
}

void Dialog::adaptContent(QSize room)
{
    const int others = form()->heightForWidth(room.width()) - m_log->sizeHint().height();
    const int most = int(screen()->availableSize().height() * mostOfScreen);
    if (m_log->isVisibleTo(form()))
        m_log->setHeightLimit(std::min(most, room.height() - others));
}

void Dialog::showEvent(QShowEvent *event)
{
    CardWindow::showEvent(event);
    // The default button shows its focus ring from the start.
    setAttribute(Qt::WA_KeyboardFocusChange);
    QAccessibleEvent opened(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&opened);
}

void Dialog::closeEvent(QCloseEvent *event)
{
    CardWindow::closeEvent(event);
    emit closed(m_isAccepted);
}

void Dialog::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isEnter)
        return CardWindow::keyPressEvent(event);
    if (!event->isAutoRepeat())
        m_default->click();
}

bool Dialog::eventFilter(QObject *object, QEvent *event)
{
    if (object == form() && event->type() == QEvent::Paint)
        paintHalo();
    return CardWindow::eventFilter(object, event);
}

/// Paints a translucent border around the button that has the focus.
void Dialog::paintHalo()
{
    const auto *button = qobject_cast<const PushButton *>(focusWidget());
    if (!button || !button->hasFocus())
        return;
    const int width = points(haloWidth);
    const QRect place(button->mapTo(form(), QPoint()), button->size());
    QPainter painter(form());
    ControlPaint::box(painter, place.marginsAdded({width, width, width, width}),
                      points(ControlMetrics::controlRadius) + width,
                      palette().color(QPalette::AlternateBase), Qt::transparent);
}

} // namespace tidewick
