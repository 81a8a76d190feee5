// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/LedgerHistogramAccess.h"

#include "ui/ledger/LedgerHistogram.h"
#include "ui/ledger/LedgerTexts.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include <map>

namespace tidewick::LedgerHistogramAccess {

namespace {

/// The bar at a position of the histogram, whichever ledger it shows.
class Bar final : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    Bar(LedgerHistogram &histogram, qsizetype position)
        : m_histogram(histogram), m_position(position)
    {
    }

    bool isValid() const override { return m_position < m_histogram.ledgers().size(); }
    QObject *object() const override { return nullptr; }
    QWindow *window() const override { return m_histogram.window()->windowHandle(); }
    QAccessibleInterface *parent() const override
    {
        return QAccessible::queryAccessibleInterface(&m_histogram);
    }
    QAccessibleInterface *child(int) const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }

    QString text(QAccessible::Text kind) const override
    {
        if (kind != QAccessible::Name || !isValid())
            return {};
        return LedgerTexts::barName(m_histogram.ledgers().at(m_position));
    }
    void setText(QAccessible::Text, const QString &) override {}

    QRect rect() const override
    {
        if (!isValid())
            return {};
        const QRect column = m_histogram.column(m_position);
        return {m_histogram.mapToGlobal(column.topLeft()), column.size()};
    }

    QAccessible::Role role() const override { return QAccessible::ListItem; }

    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.focusable = true;
        state.focused = m_histogram.current() == m_position;
        state.invisible = !m_histogram.isVisible();
        return state;
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface
                   ? static_cast<QAccessibleActionInterface *>(this)
                   : nullptr;
    }

    QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString &action) override
    {
        if (action == pressAction())
            m_histogram.choose(m_position);
    }
    QStringList keyBindingsForAction(const QString &) const override { return {}; }

private:
    LedgerHistogram &m_histogram;
    qsizetype m_position;
};

class Histogram final : public QAccessibleWidget
{
public:
    explicit Histogram(LedgerHistogram &histogram)
        : QAccessibleWidget(&histogram, QAccessible::List), m_histogram(histogram)
    {
    }
    Histogram(const Histogram &) = delete;
    Histogram &operator=(const Histogram &) = delete;
    ~Histogram() override
    {
        for (const auto &[position, id] : m_bars)
            QAccessible::deleteAccessibleInterface(id);
    }

    int childCount() const override { return int(m_histogram.ledgers().size()); }

    QAccessibleInterface *child(int position) const override
    {
        if (position < 0 || position >= childCount())
            return nullptr;
        auto bar = m_bars.find(position);
        if (bar == m_bars.end()) {
            // Qt owns it from here. NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks)
            const QAccessible::Id id =
                QAccessible::registerAccessibleInterface(new Bar(m_histogram, position));
            bar = m_bars.emplace(position, id).first;
        }
        return QAccessible::accessibleInterface(bar->second);
    }

    QAccessibleInterface *childAt(int x, int y) const override
    {
        const QPoint point = m_histogram.mapFromGlobal(QPoint(x, y));
        for (int i = 0; i < childCount(); ++i)
            if (m_histogram.column(i).contains(point))
                return child(i);
        return nullptr;
    }

    QAccessibleInterface *focusChild() const override { return child(int(m_histogram.current())); }

    int indexOfChild(const QAccessibleInterface *wanted) const override
    {
        for (const auto &[position, id] : m_bars)
            if (QAccessible::accessibleInterface(id) == wanted)
                return position;
        return -1;
    }

private:
    LedgerHistogram &m_histogram;
    /// Created on demand; Qt knows them by their ids.
    mutable std::map<int, QAccessible::Id> m_bars;
};

QAccessibleInterface *make(const QString &, QObject *object)
{
    auto *histogram = qobject_cast<LedgerHistogram *>(object);
    return histogram ? new Histogram(*histogram) : nullptr;
}

} // namespace

void install()
{
    QAccessible::installFactory(make);
}

void tellFocus(LedgerHistogram &histogram)
{
    if (!QAccessible::isActive() || histogram.current() < 0)
        return;
    QAccessibleEvent event(&histogram, QAccessible::Focus);
    event.setChild(int(histogram.current()));
    QAccessible::updateAccessibility(&event);
}

} // namespace tidewick::LedgerHistogramAccess
