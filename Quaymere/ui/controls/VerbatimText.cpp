// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/VerbatimText.h"

#include "ui/controls/ControlMetrics.h"
#include "ui/controls/ControlPaint.h"
#include "ui/controls/TextScale.h"

#include <QEvent>

#include <cmath>
#include <memory>

namespace tidewick {

VerbatimText::VerbatimText(const QString &name, const QString &text, QWidget *parent)
    : QTextEdit(parent)
{
    setAccessibleName(name);
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setTabChangesFocus(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    viewport()->setAutoFillBackground(false);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    takeFont();
    // A trailing line break does not begin another line.
    setPlainText(text.endsWith(u'\n') ? text.chopped(1) : text);
}

QSize VerbatimText::sizeHint() const
{
    return {0, QFontMetrics(document()->defaultFont()).height()};
}

int VerbatimText::heightForWidth(int width) const
{
    const std::unique_ptr<QTextDocument> copy(document()->clone());
    copy->setTextWidth(width);
    return int(std::ceil(copy->size().height()));
}

void VerbatimText::paintEvent(QPaintEvent *event)
{
    QPainter painter(viewport());
    ControlPaint::box(painter, viewport()->rect(),
                      TextScale::scaled(font(), ControlMetrics::cardRadius),
                      palette().color(QPalette::Base), palette().color(QPalette::Mid));
    ControlPaint::ring(painter, *this, TextScale::scaled(font(), ControlMetrics::cardRadius));
    painter.end();
    QTextEdit::paintEvent(event);
}

void VerbatimText::changeEvent(QEvent *event)
{
    QTextEdit::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        takeFont();
}

/// Does not use setFont(): the text follows the size of the window's font only while the widget has
/// no font set.
void VerbatimText::takeFont()
{
    document()->setDefaultFont(TextScale::fixedWidth(font()));
    document()->setDocumentMargin(TextScale::scaled(font(), ControlMetrics::rowPadding));
    updateGeometry();
}

} // namespace tidewick
