// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/Disclosure.h"

#include "ui/controls/Announcer.h"
#include "ui/controls/ControlMetrics.h"
#include "ui/controls/ControlPaint.h"
#include "ui/controls/TextScale.h"

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QStyle>

namespace tidewick {

namespace {

/// Between the text and the focus ring around it.
constexpr int ringPadding = 6;

QFont mediumWeight(QFont font)
{
    font.setWeight(QFont::Medium);
    return font;
}

int textStart(const QFont &font)
{
    return TextScale::scaled(font, ControlMetrics::signWidth + ControlMetrics::signMargin);
}

/// A button that expands and collapses: Qt would present a checkable button as a check box.
class AccessibleDisclosure final : public QAccessibleWidget
{
public:
    explicit AccessibleDisclosure(Disclosure *disclosure)
        : QAccessibleWidget(disclosure, QAccessible::Button, disclosure->text()),
          m_disclosure(disclosure)
    {
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.expandable = true;
        state.expanded = m_disclosure->isChecked();
        state.collapsed = !m_disclosure->isChecked();
        return state;
    }

    QStringList actionNames() const override
    {
        return QStringList{pressAction()} + QAccessibleWidget::actionNames();
    }

    void doAction(const QString &action) override
    {
        if (action == pressAction())
            m_disclosure->click();
        else
            QAccessibleWidget::doAction(action);
    }

private:
    Disclosure *m_disclosure;
};

QAccessibleInterface *makeAccessible(const QString &, QObject *object)
{
    auto *disclosure = qobject_cast<Disclosure *>(object);
    return disclosure ? new AccessibleDisclosure(disclosure) : nullptr;
}

} // namespace

Disclosure::Disclosure(const QString &text, QWidget *parent)
    : PushButton(text, parent), m_announcer(new Announcer(parent))
{
    QAccessible::installFactory(makeAccessible);
    setCheckable(true);
    connect(this, &Disclosure::toggled, this, [this](bool isOpen) {
        QAccessible::State changed;
        changed.expanded = true;
        changed.collapsed = true;
        QAccessibleStateChangeEvent event(this, changed);
        QAccessible::updateAccessibility(&event);
        // Qt 6.4 does not pass that on.
        m_announcer->say(isOpen ? QStringLiteral("expanded") : QStringLiteral("collapsed"));
    });
}

QSize Disclosure::sizeHint() const
{
    const int text = QFontMetrics(mediumWeight(font())).horizontalAdvance(this->text());
    return {textStart(font()) + text + TextScale::scaled(font(), ringPadding),
            PushButton::sizeHint().height()};
}

void Disclosure::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const bool isRightToLeft = layoutDirection() == Qt::RightToLeft;
    const qreal sign = TextScale::scaled(font(), ControlMetrics::signWidth);
    const qreal half = sign * 0.4;
    const qreal depth = sign * 0.22;
    const QPointF middle(isRightToLeft ? width() - sign / 2 : sign / 2, height() / 2.0);
    const auto color = palette().color(QPalette::PlaceholderText);
    if (isChecked()) {
        ControlPaint::arrow(painter, middle + QPointF(0, depth), middle + QPointF(-half, -depth),
                            middle + QPointF(half, -depth), color, sign * 0.2);
    } else {
        const qreal ahead = isRightToLeft ? -depth : depth;
        ControlPaint::arrow(painter, middle + QPointF(ahead, 0), middle + QPointF(-ahead, -half),
                            middle + QPointF(-ahead, half), color, sign * 0.2);
    }
    painter.setFont(mediumWeight(font()));
    painter.setPen(palette().color(QPalette::WindowText));
    ControlPaint::line(painter, rect(), textStart(font()), layoutDirection(), text());
    // The sign stays in line with what is above it, so there is no room for a ring around it.
    const int start = textStart(font()) - TextScale::scaled(font(), ringPadding);
    ControlPaint::ring(
        painter, *this,
        QStyle::visualRect(layoutDirection(), rect(), rect().adjusted(start, 0, 0, 0)),
        TextScale::scaled(font(), ControlMetrics::controlRadius));
}

void Disclosure::keyPressEvent(QKeyEvent *event)
{
    const bool isRightToLeft = layoutDirection() == Qt::RightToLeft;
    const int towards = isRightToLeft ? Qt::Key_Left : Qt::Key_Right;
    const int away = isRightToLeft ? Qt::Key_Right : Qt::Key_Left;
    if (event->key() == towards)
        setChecked(true);
    else if (event->key() == away)
        setChecked(false);
    else
        PushButton::keyPressEvent(event);
}

} // namespace tidewick
