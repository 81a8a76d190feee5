// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QIconEngine>
#include <QIconEnginePlugin>

#include <memory>

class QSvgRenderer;

namespace tidewick {

/// Provides the drawing in an SVG file to a QIcon. All modes and states look the same.
class SvgIconEngine final : public QIconEngine
{
public:
    void addFile(const QString &file, const QSize &size, QIcon::Mode mode,
                 QIcon::State state) override;
    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    QIconEngine *clone() const override;
    QString key() const override;
    /// Also true of a file that contains no drawing.
    bool isNull() override;

private:
    std::shared_ptr<QSvgRenderer> m_drawing;
};

/// Lets Qt read SVG icons, above all from icon themes. Qt has a plugin for that itself, but not
/// every system installs it: on Debian 13, with Qt 6.8, it is in a package that is only
/// recommended.
class SvgIconPlugin final : public QIconEnginePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QIconEngineFactoryInterface_iid FILE "SvgIconPlugin.json")

public:
    QIconEngine *create(const QString &file) override;
};

} // namespace tidewick
