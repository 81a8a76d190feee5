// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/FormDetails.h"

#include "ui/FormMetrics.h"
#include "ui/FormPaint.h"
#include "ui/TextScale.h"

#include <QEvent>
#include <QFontDatabase>

#include <cmath>
#include <memory>

namespace tidewick {

FormDetails::FormDetails(const QString &name, const QString &text, QWidget *parent)
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
    // The end of the last line is not the beginning of another.
    setPlainText(text.endsWith(u'\n') ? text.chopped(1) : text);
}

QSize FormDetails::sizeHint() const
{
    return {0, QFontMetrics(document()->defaultFont()).height()};
}

int FormDetails::heightForWidth(int width) const
{
    const std::unique_ptr<QTextDocument> copy(document()->clone());
    copy->setTextWidth(width);
    return int(std::ceil(copy->size().height()));
}

void FormDetails::paintEvent(QPaintEvent *event)
{
    QPainter painter(viewport());
    FormPaint::box(painter, viewport()->rect(), TextScale::scaled(font(), FormMetrics::cardRadius),
                   palette().color(QPalette::Base), palette().color(QPalette::Mid));
    FormPaint::ring(painter, *this, TextScale::scaled(font(), FormMetrics::cardRadius));
    painter.end();
    QTextEdit::paintEvent(event);
}

void FormDetails::changeEvent(QEvent *event)
{
    QTextEdit::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        takeFont();
}

/// Not by setFont(): as large as the window's text it remains only while its own font is the
/// window's.
void FormDetails::takeFont()
{
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    const QFont size = TextScale::resized(font(), 0.92);
    if (size.pixelSize() > 0)
        fixed.setPixelSize(size.pixelSize());
    else
        fixed.setPointSizeF(size.pointSizeF());
    document()->setDefaultFont(fixed);
    document()->setDocumentMargin(TextScale::scaled(font(), FormMetrics::rowPadding));
    updateGeometry();
}

} // namespace tidewick
