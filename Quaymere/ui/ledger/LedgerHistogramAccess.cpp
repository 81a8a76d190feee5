// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/LedgerHistogramAccess.h"

#include "ui/ledger/DrawnList.h"
#include "ui/ledger/LedgerHistogram.h"
#include "ui/ledger/LedgerTexts.h"

namespace tidewick::LedgerHistogramAccess {

namespace {

class Bar final : public DrawnItem, public QAccessibleActionInterface
{
public:
    Bar(const DrawnList &list, LedgerHistogram &histogram, const DrawnName &name)
        : DrawnItem(list, name), m_histogram(histogram)
    {
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = DrawnItem::state();
        state.focusable = true;
        state.focused = isValid() && m_histogram.current() == position();
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
            m_histogram.choose(position());
    }
    QStringList keyBindingsForAction(const QString &) const override { return {}; }

private:
    LedgerHistogram &m_histogram;
};

class Histogram final : public DrawnList
{
public:
    explicit Histogram(LedgerHistogram &histogram) : DrawnList(histogram), m_histogram(histogram) {}

    QStringList names() const override
    {
        QStringList names;
        for (const LedgerFeed::Ledger &ledger : m_histogram.ledgers())
            names += LedgerTexts::barName(ledger);
        return names;
    }
    QRect itemRect(int position) const override { return m_histogram.column(position); }
    QAccessibleInterface *focusChild() const override { return child(int(m_histogram.current())); }

protected:
    QAccessibleInterface *makeItem(const DrawnName &name) const override
    {
        return new Bar(*this, m_histogram, name);
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
