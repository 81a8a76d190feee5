// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/panel/PanelRig.h"

#include "ui/SampleStatus.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QLabel>
#include <QtTest>

namespace tidewick {

namespace {

QString line(bool isCommand, bool enabled, const QString &text)
{
    if (!isCommand)
        return text;
    return (enabled ? QLatin1String("[") : QLatin1String("![")) + text + u']';
}

/// The visible widget of that kind whose text begins with `start`.
template <typename Kind>
Kind *find(const QWidget &panel, const char *start)
{
    for (Kind *widget : panel.findChildren<Kind *>()) {
        if (widget->isVisible() && widget->accessibleName().startsWith(QString::fromUtf8(start)))
            return widget;
    }
    qFatal("No row begins with '%s'", start);
}

} // namespace

NodeStatus everyRow()
{
    NodeStatus status = sampleStatus();
    status.errorText = QStringLiteral("an older error");
    status.timeLeft = QStringLiteral("3h 12m");
    return status;
}

NodeStatus withDetail(const QString &detail)
{
    NodeStatus status = everyRow();
    status.detail = detail;
    return status;
}

NodeStatus stopped()
{
    NodeStatus status = everyRow();
    status.phase = Phase::Stopped;
    status.hasProcess = false;
    return status;
}

NodeStatus stopping()
{
    NodeStatus status = everyRow();
    status.phase = Phase::Stopping;
    return status;
}

NodeStatus withoutError()
{
    NodeStatus status = everyRow();
    status.errorText.reset();
    return status;
}

NodeStatus withAdvice(Advice::Cause cause)
{
    NodeStatus status = everyRow();
    status.advice =
        Advice{cause, QStringLiteral("No valid list of validators since 18 January. Its publisher "
                                     "cannot be reached; check your network or validators.txt.")};
    return status;
}

QString pathOf(int length)
{
    return u'/' + QString(length - 1, u'p');
}

PanelRig::PanelRig(const NodeStatus &status)
{
    QObject::connect(&panel, &NodePanel::commandChosen, &panel,
                     [this](MenuCommand command) { chosen.append(command); });
    show(status);
    panel.show();
    panel.activateWindow();
    if (!QTest::qWaitForWindowActive(&panel))
        qFatal("The panel does not become active");
}

QStringList PanelRig::lines() const
{
    QMap<std::pair<int, int>, QString> lines;
    for (const QFrame *row : panel.findChildren<QFrame *>()) {
        const QPoint place = row->mapTo(&panel, QPoint());
        if (row->isVisible() && row->frameShape() == QFrame::HLine)
            lines.insert({place.y(), place.x()}, QStringLiteral("-"));
        else if (row->isVisible() && qobject_cast<const QLabel *>(row))
            lines.insert({place.y(), place.x()}, line(false, true, row->accessibleName()));
    }
    for (const QAbstractButton *row : panel.findChildren<QAbstractButton *>()) {
        const QPoint place = row->mapTo(&panel, QPoint());
        if (row->isVisible())
            lines.insert({place.y(), place.x()},
                         line(true, row->isEnabled(), row->accessibleName()));
    }
    return lines.values();
}

QAbstractButton *PanelRig::command(const char *start) const
{
    return find<QAbstractButton>(panel, start);
}

QLabel *PanelRig::text(const char *start) const
{
    return find<QLabel>(panel, start);
}

QString PanelRig::focused() const
{
    const auto *button = qobject_cast<const QAbstractButton *>(panel.focusWidget());
    return button ? button->accessibleName() : QString();
}

void PanelRig::click(const char *name) const
{
    QTest::mouseClick(command(name), Qt::LeftButton);
}

void PanelRig::key(Qt::Key key) const
{
    QTest::keyClick(panel.windowHandle(), key);
}

void PanelRig::closeByUser()
{
    QCloseEvent event;
    QSpontaneKeyEvent::setSpontaneous(&event);
    // sendEvent() would mark the event as coming from the program.
    QCoreApplication::instance()->notify(&panel, &event);
}

QStringList rowLines(const QList<MenuRow> &rows)
{
    QStringList lines;
    for (const MenuRow &row : rows)
        lines.append(row.kind == MenuRow::Kind::Separator
                         ? QStringLiteral("-")
                         : line(row.kind == MenuRow::Kind::Command, row.enabled, row.text));
    return lines;
}

QRect drawn(const QImage &picture)
{
    QRect drawn;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixel(x, y) != picture.pixel(0, 0))
                drawn |= QRect(x, y, 1, 1);
        }
    }
    return drawn;
}

} // namespace tidewick
