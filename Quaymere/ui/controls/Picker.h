// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QComboBox>

namespace tidewick {

/// One entry of a picker.
struct Choice
{
    qint64 value;
    QString label;

    bool operator==(const Choice &) const = default;
};

/// A picker in a card: one value out of a list, by mouse, arrow keys or the first letters. The
/// wheel passes over it, lest scrolling change what it comes across.
class Picker final : public QComboBox
{
    Q_OBJECT

public:
    explicit Picker(QWidget *parent);

    /// Offers these, with the current one picked. Nothing changes where they are the same.
    void offer(const QList<Choice> &choices, qint64 current);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

signals:
    /// The user has picked a value.
    void picked(qint64 value);

protected:
    void paintEvent(QPaintEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    int points(int measure) const;

    QList<Choice> m_choices;
};

} // namespace tidewick
