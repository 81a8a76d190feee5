// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QVBoxLayout;

namespace tidewick {

/// A card: a column of rows with a hairline around them and one between neighbouring rows.
class Card final : public QWidget
{
    Q_OBJECT

public:
    explicit Card(QWidget *parent);

    /// Adds a row below the others.
    void add(QWidget *row);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QVBoxLayout *m_rows;
};

} // namespace tidewick
