// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/LedgerHistogramAccess.h"

#include "ui/ledger/DrawnList.h"
#include "ui/ledger/LedgerHistogram.h"
#include "ui/ledger/LedgerTexts.h"

namespace tidewick::LedgerHistogramAccess {

namespace {

/// The bar at a position of the histogram, whichever ledger it shows.
class Bar final : public DrawnItem, public QAccessibleActionInterface
{
public:
    Bar(LedgerHistogram &histogram, qsizetype position)
        : DrawnItem(histogram), m_histogram(histogram), m_position(position)
    {
    }

    bool isValid() const override { return m_position < m_histogram.ledgers().size(); }

    QString text(QAccessible::Text kind) const override
    {
        if (kind != QAccessible::Name || !isValid())
            return {};
        return LedgerTexts::barName(m_histogram.ledgers().at(m_position));
    }

    QRect rect() const override
    {
        if (!isValid())
            return {};
        const QRect column = m_histogram.column(m_position);
        return {m_histogram.mapToGlobal(column.topLeft()), column.size()};
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = DrawnItem::state();
        state.focusable = true;
        state.focused = m_histogram.current() == m_position;
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

class Histogram final : public DrawnList
{
public:
    explicit Histogram(LedgerHistogram &histogram) : DrawnList(histogram), m_histogram(histogram) {}

    int childCount() const override { return int(m_histogram.ledgers().size()); }
    QAccessibleInterface *focusChild() const override { return child(int(m_histogram.current())); }

protected:
    QAccessibleInterface *makeItem(int position) const override
    {
        return new Bar(m_histogram, position);
    }

private:
    LedgerHistogram &m_histogram;
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
