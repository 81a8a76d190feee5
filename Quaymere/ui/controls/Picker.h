// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QComboBox>

namespace tidewick {

class Announcer;

/// One entry of a picker.
struct Choice
{
    qint64 value;
    QString label;

    bool operator==(const Choice &) const = default;
};

/// A picker in a card: the user picks one value from a list with the mouse, the arrow keys or by
/// typing its first characters. It ignores the wheel, so that scrolling a window changes no
/// setting. While it has the focus, screen readers hear every change of its entry.
class Picker final : public QComboBox
{
    Q_OBJECT

public:
    /// The question is what screen readers call the picker.
    Picker(const QString &question, QWidget *parent);

    /// Offers these choices with the current one picked. Keeps the list if the choices are the
    /// same.
    void offer(const QList<Choice> &choices, qint64 current);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }
    void showPopup() override;
    void hidePopup() override;

signals:
    /// The user has picked a value.
    void picked(qint64 value);

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    int points(int measure) const;

    QList<Choice> m_choices;
    Announcer *m_announcer;
};

} // namespace tidewick
