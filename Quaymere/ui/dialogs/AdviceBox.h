// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

namespace tidewick {

class TextLabel;

/// Advice in a dialog, in a box of its own colour.
class AdviceBox final : public QWidget
{
    Q_OBJECT

public:
    explicit AdviceBox(QWidget *parent);

    void setText(const QString &text);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    TextLabel *m_text;
};

} // namespace tidewick
