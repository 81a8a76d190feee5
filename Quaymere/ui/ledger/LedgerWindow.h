// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "feed/LedgerFeed.h"
#include "ui/ledger/LedgerCard.h"

#include <QUrl>

class QLabel;

namespace tidewick {

class LedgerHeader;
class LedgerHistogram;
class LedgerTile;
class LedgerTypes;
class TransactionCard;

/// The node's ledgers and transactions, live. It has a feed of its own, which runs while the window
/// is shown. Main thread only.
class LedgerWindow final : public QWidget
{
    Q_OBJECT

public:
    using OpenUrl = std::function<bool(const QUrl &)>;

    /// Pages of the explorer are shown through openUrl.
    explicit LedgerWindow(OpenUrl openUrl, LedgerFeedHost host = {}, QWidget *parent = nullptr);
    ~LedgerWindow() override;

    /// Dark or light, which it is at first.
    void setDark(bool dark);

    /// Nothing is to move by itself.
    void setStill(bool still);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void followLedgers();
    void open(const char *folder, const QString &name) const;

    void fit();
    void arrange();
    void takeColors();

    OpenUrl m_openUrl;
    LedgerFeed m_feed;
    LedgerLook m_look;
    bool m_dark = false;

    LedgerHeader *m_header;
    LedgerTile *m_latest;
    LedgerTile *m_rate;
    LedgerTile *m_busiest;
    LedgerHistogram *m_histogram;
    LedgerTypes *m_types;
    TransactionCard *m_transactions;
    QLabel *m_footnote;
};

} // namespace tidewick
