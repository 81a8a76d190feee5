// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/icon/MarkBundle.h"

namespace tidewick {

namespace fs = std::filesystem;

MarkBundle::MarkBundle()
{
    fs::create_directories(path().parent_path());
}

MarkBundle::MarkBundle(const QByteArray &mark) : MarkBundle()
{
    writeFile(path(), mark);
}

fs::path MarkBundle::path() const
{
    return m_folder.path() / "Contents/Resources/MenuBarIcon.svg";
}

QByteArray MarkBundle::shipped()
{
    return contentOf(fs::path(TIDEWICK_RESOURCES) / "icons/MenuBarIcon.svg");
}

QByteArray MarkBundle::block(int width, int height)
{
    const QByteArray size =
        QStringLiteral("width=\"%1\" height=\"%2\"").arg(width).arg(height).toLatin1();
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" " + size + "><rect " + size + "/></svg>";
}

QRect ink(const QImage &picture, const QRect &within)
{
    QRect found;
    for (int y = within.top(); y <= within.bottom(); ++y)
        for (int x = within.left(); x <= within.right(); ++x)
            if (picture.pixelColor(x, y).alpha() >= 128)
                found |= QRect(x, y, 1, 1);
    return found;
}

QRect ink(const QImage &picture)
{
    return ink(picture, picture.rect());
}

QImage picture(const QIcon &icon, int size)
{
    return icon.pixmap(QSize(size, size), 1.0).toImage();
}

} // namespace tidewick
