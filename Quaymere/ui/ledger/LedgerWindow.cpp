// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/LedgerWindow.h"

#include "ui/controls/Announcer.h"
#include "ui/controls/FreeArea.h"
#include "ui/controls/TextScale.h"
#include "ui/ledger/LedgerHeader.h"
#include "ui/ledger/LedgerHistogram.h"
#include "ui/ledger/LedgerTexts.h"
#include "ui/ledger/LedgerTile.h"
#include "ui/ledger/LedgerTypes.h"
#include "ui/ledger/TransactionCard.h"
#include "ui/menu/Explorers.h"

#include <QLabel>
#include <QLoggingCategory>
#include <QPainter>
#include <QShowEvent>
#include <QStyle>

#include <array>

namespace tidewick {

namespace {

Q_LOGGING_CATEGORY(lcLedger, "tidewick.ledger", QtWarningMsg)

/// Smaller windows are for smaller screens.
constexpr QSize leastSize(640, 560);

const QString transactions = QStringLiteral("transactions");

} // namespace

LedgerWindow::LedgerWindow(OpenUrl openUrl, LedgerFeedHost host, QWidget *parent)
    : QWidget(parent, Qt::Window), m_openUrl(std::move(openUrl)), m_age(host.clock),
      m_feed(std::move(host)), m_look{Palette({}), LedgerMetrics(font(), size())},
      m_header(new LedgerHeader(m_look, this)),
      m_latest(new LedgerTile(m_look, QStringLiteral("This ledger"), this)),
      m_rate(new LedgerTile(m_look, QStringLiteral("Per second"), this)),
      m_busiest(new LedgerTile(m_look, QStringLiteral("Busiest in view"), this)),
      m_histogram(new LedgerHistogram(m_look, this)), m_types(new LedgerTypes(m_look, this)),
      m_transactions(new TransactionCard(m_look, this)), m_footnote(new QLabel(this)),
      m_announcer(new Announcer(this))
{
    setWindowTitle(QStringLiteral("Live Ledger"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    // No control has the focus at first: a window that has just opened may receive an Enter meant
    // for another window.
    setFocusPolicy(Qt::ClickFocus);
    setFocus();
    m_footnote->setTextFormat(Qt::PlainText);
    m_footnote->setAlignment(Qt::AlignCenter);
    m_footnote->setWordWrap(true);

    connect(m_histogram, &LedgerHistogram::chosen, this,
            [this](qint64 ledger) { open("ledger", QString::number(ledger)); });
    connect(m_transactions, &TransactionCard::chosen, this,
            [this](const QString &hash) { open("tx", hash); });
    connect(m_types, &LedgerTypes::grown, this, &LedgerWindow::arrange);

    connect(&m_age, &LedgerAge::changed, this, &LedgerWindow::followAge);
    connect(&m_feed, &LedgerFeed::connectedChanged, this, &LedgerWindow::followConnection);
    connect(&m_feed, &LedgerFeed::ledgersChanged, this, &LedgerWindow::followLedgers);
    connect(&m_feed, &LedgerFeed::typesChanged, this,
            [this] { m_types->setTypes(m_feed.types()); });
    connect(&m_feed, &LedgerFeed::txsChanged, this,
            [this](qsizetype arrived) { m_transactions->setTransactions(m_feed.txs(), arrived); });

    followLedgers();
    takeColors();
    fit();
}

LedgerWindow::~LedgerWindow()
{
    // Hides the parts while the look that they paint with still exists.
    hide();
}

void LedgerWindow::setScheme(Scheme scheme)
{
    if (std::exchange(m_scheme, scheme) == scheme)
        return;
    m_look.colors = Palette(scheme);
    takeColors();
    fit();
}

void LedgerWindow::setStill(bool still)
{
    if (std::exchange(m_look.still, still) != still)
        fit();
}

void LedgerWindow::takeColors()
{
    const Palette &colors = m_look.colors;
    QPalette palette(colors.surface, colors.bg);
    palette.setColor(QPalette::WindowText, colors.ink3);
    palette.setColor(QPalette::Base, colors.surface);
    palette.setColor(QPalette::Text, colors.ink);
    setPalette(palette);
}

void LedgerWindow::followLedgers()
{
    const auto &ledgers = m_feed.ledgers();
    const auto *latest = LedgerTexts::latest(ledgers);
    const auto *busiest = LedgerTexts::busiest(ledgers);
    const auto txns = [](const LedgerFeed::Ledger *ledger) {
        return LedgerTexts::figure(ledger ? std::optional(ledger->txns) : std::nullopt);
    };
    m_header->setLedger(LedgerTexts::latestIndex(ledgers));
    m_latest->setFigure(txns(latest), transactions);
    m_rate->setFigure(LedgerTexts::rate(m_feed.txRate()), transactions);
    m_busiest->setFigure(txns(busiest), LedgerTexts::busiestIndex(ledgers));
    m_histogram->setLedgers(ledgers);
    m_age.follow(m_feed.connected(), latest ? std::optional(latest->id) : std::nullopt);
}

void LedgerWindow::followConnection()
{
    m_header->setConnected(m_feed.connected());
    m_announcer->say(LedgerTexts::status(m_feed.connected()));
    const auto *latest = LedgerTexts::latest(m_feed.ledgers());
    m_age.follow(m_feed.connected(), latest ? std::optional(latest->id) : std::nullopt);
}

void LedgerWindow::followAge()
{
    m_header->setAge(m_age.text());
    if (m_look.old == m_age.isOld())
        return;
    m_look.old = m_age.isOld();
    const QString description = m_look.old ? LedgerTexts::oldFigures() : QString();
    for (LedgerCard *card : findChildren<LedgerCard *>()) {
        card->lookChanged();
        // The header's description is the age.
        if (card != m_header)
            card->setAccessibleDescription(description);
    }
    findChild<TransactionList *>()->setAccessibleDescription(description);
}

void LedgerWindow::open(const char *folder, const QString &name) const
{
    const auto page = Explorers::page(Explorers::window, folder, name);
    if (page && !m_openUrl(*page))
        qCWarning(lcLedger, "nothing on this desktop opens %s", qUtf8Printable(page->toString()));
}

void LedgerWindow::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    // The stream keeps running while the window is minimised, so restoring it need not start the
    // stream.
    if (!event->spontaneous())
        m_feed.start();
    m_age.setShown(!isMinimized());
}

void LedgerWindow::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    m_age.setShown(false);
    if (!event->spontaneous())
        m_feed.stop();
}

void LedgerWindow::resizeEvent(QResizeEvent *)
{
    fit();
}

void LedgerWindow::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        fit();
    else if (event->type() == QEvent::LayoutDirectionChange)
        arrange();
    else if (event->type() == QEvent::WindowStateChange)
        m_age.setShown(isVisible() && !isMinimized());
}

void LedgerWindow::paintEvent(QPaintEvent *event)
{
    QPainter(this).fillRect(event->rect(), m_look.colors.bg);
}

/// Computes the measures from font and height and lays everything out with them.
void LedgerWindow::fit()
{
    const QSize readable(LedgerMetrics::leastWidth(font()), LedgerMetrics::leastHeight(font()));
    setMinimumSize(leastSize.boundedTo(freeArea(*this)).expandedTo(readable));
    m_look.metrics = LedgerMetrics(font(), size());
    m_footnote->setFont(m_look.metrics.caption);
    const int overhang = TextScale::overhang(m_look.metrics.caption);
    m_footnote->setContentsMargins(0, overhang, 0, overhang);
    for (LedgerCard *card : findChildren<LedgerCard *>())
        card->lookChanged();
    update();
    arrange();
}

void LedgerWindow::arrange()
{
    const LedgerMetrics &metrics = m_look.metrics;
    const int width = std::min(this->width() - 2 * metrics.side, metrics.mostWidth);
    const int left = (this->width() - width) / 2;
    int top = metrics.top;
    const auto place = [&](QWidget *part, int height) {
        part->setGeometry(left, top, width, height);
        top += height + metrics.gap;
    };
    m_header->setGeometry(left, top, width, metrics.header);
    top += metrics.header + metrics.headerGap;

    const std::array<LedgerTile *, 3> tiles{m_latest, m_rate, m_busiest};
    for (int i = 0; i < 3; ++i) {
        const int from = i * (width + metrics.gap) / 3;
        const int to = (i + 1) * (width + metrics.gap) / 3 - metrics.gap;
        const QRect tile(left + from, top, to - from, metrics.tile);
        tiles.at(std::size_t(i))->setGeometry(QStyle::visualRect(layoutDirection(), rect(), tile));
    }
    top += metrics.tile + metrics.gap;

    place(m_histogram, metrics.chartCard());
    place(m_types, m_types->wantedHeight());
    const bool fits = m_footnote->fontMetrics().horizontalAdvance(LedgerTexts::footnote()) <= width;
    m_footnote->setText(fits ? LedgerTexts::footnote() : LedgerTexts::footnoteOnTwoLines());
    const int footnote = m_footnote->heightForWidth(width);
    place(m_transactions, height() - top - metrics.gap - footnote - metrics.bottom);
    place(m_footnote, footnote);
}

} // namespace tidewick
