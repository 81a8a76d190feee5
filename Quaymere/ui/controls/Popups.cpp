// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/Popups.h"

#include "ui/controls/ControlPalette.h"
#include "ui/controls/PopupStyle.h"

#include <QApplication>
#include <QEvent>
#include <QMenu>

namespace tidewick::Popups {

namespace {

/// Returns `above`, at this opacity, over `below`.
QColor mixed(const QColor &above, const QColor &below, float opacity)
{
    const auto mix = [opacity](float one, float other) {
        return one * opacity + other * (1 - opacity);
    };
    return QColor::fromRgbF(mix(above.redF(), below.redF()), mix(above.greenF(), below.greenF()),
                            mix(above.blueF(), below.blueF()));
}

bool isDark(const QPalette &colors)
{
    return colors.color(QPalette::Base).lightness() < 128;
}

/// Dresses the popups that Qt makes by itself before they have a window of the window system, which
/// is when they learn their style.
class Dresser final : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::Polish && !m_isDressing) {
            m_isDressing = true; // a new style polishes again
            if (object->inherits("QTipLabel"))
                dressToolTip(static_cast<QWidget &>(*object));
            else if (auto *menu = qobject_cast<QMenu *>(object))
                dressMenu(*menu);
            m_isDressing = false;
        }
        return false;
    }

private:
    static void dressToolTip(QWidget &toolTip)
    {
        dress(toolTip);
        const int side = PopupStyle::toolTipSidePadding(toolTip.font());
        toolTip.setContentsMargins(side, 0, side, 0);
    }

    static void dressMenu(QMenu &menu)
    {
        if (qobject_cast<PopupStyle *>(menu.style()))
            return;
        // Windows have the colours of the appearance, but their menus do not inherit them.
        if (const QWidget *owner = menu.parentWidget())
            menu.setPalette(owner->window()->palette());
        dress(menu);
    }

    bool m_isDressing = false;
};

} // namespace

QColor ground(const QPalette &colors)
{
    constexpr float raised = 0.65F;
    return mixed(colors.color(QPalette::Button), colors.color(QPalette::Base), raised);
}

QColor currentRow(const QPalette &colors)
{
    QColor row = colors.color(QPalette::Highlight);
    const float shown = hasHighContrast(colors) ? 2 : 1;
    row.setAlphaF(shown * (isDark(colors) ? 0.28F : 0.1F));
    return row;
}

void dress(QWidget &popup, const QWidget *colors)
{
    popup.setAttribute(Qt::WA_TranslucentBackground);
    auto *style = new PopupStyle(colors);
    style->setParent(&popup);
    popup.setStyle(style);
}

void dressThoseOfQt()
{
    static const QString name = QStringLiteral("popups");
    if (!qApp->findChild<QObject *>(name, Qt::FindDirectChildrenOnly)) {
        auto *dresser = new Dresser(qApp);
        dresser->setObjectName(name);
        qApp->installEventFilter(dresser);
    }
}

} // namespace tidewick::Popups
