// SPDX-License-Identifier: MIT
#include "gui/DisabledIcon.h"

#include <QImage>
#include <QPixmap>

namespace gui {

namespace {

constexpr int s_largestSize = 64;

QImage faded(QImage image)
{
    image = image.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            const int grey = qGray(pixel);
            image.setPixel(x, y, qRgba(grey, grey, grey, qAlpha(pixel) * 2 / 5));
        }
    }
    return image;
}

} // namespace

QIcon withDisabledPixmaps(const QIcon& icon)
{
    QIcon result = icon;
    for (const QSize& size : icon.availableSizes()) {
        if (size.width() <= s_largestSize) {
            QPixmap pixmap = QPixmap::fromImage(faded(icon.pixmap(size).toImage()));
            // The pixmap has the size that this icon needs on the screen, in device pixels.
            pixmap.setDevicePixelRatio(1);
            result.addPixmap(pixmap, QIcon::Disabled);
        }
    }
    return result;
}

} // namespace gui
