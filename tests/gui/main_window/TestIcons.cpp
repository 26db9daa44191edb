// SPDX-License-Identifier: MIT
// The icons as they are drawn on light and on dark backgrounds, enabled and disabled.
#include "tests/gui/main_window/MainWindowTest.h"

#include <QDir>
#include <QIcon>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

double linear(int channel)
{
    const double value = channel / 255.0;
    return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

/// Relative luminance and contrast ratio as the Web Content Accessibility Guidelines define them.
double luminance(QRgb colour)
{
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) +
           0.0722 * linear(qBlue(colour));
}

double contrast(QRgb one, QRgb other)
{
    const double brighter = std::max(luminance(one), luminance(other));
    const double darker = std::min(luminance(one), luminance(other));
    return (brighter + 0.05) / (darker + 0.05);
}

QImage painted(const QIcon& icon, int size, QIcon::Mode mode, QRgb background)
{
    QImage image(size, size, QImage::Format_RGB32);
    image.fill(background);
    QPainter painter(&image);
    painter.drawPixmap(0, 0, icon.pixmap(QSize(size, size), mode));
    return image;
}

/// The pixels that fulfil the condition: how many, and the rectangle around them.
template <typename Condition>
std::pair<int, QRect> pixels(const QImage& image, Condition condition)
{
    int count = 0;
    QRect around;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (condition(image.pixel(x, y))) {
                ++count;
                around |= QRect(x, y, 1, 1);
            }
        }
    }
    return {count, around};
}

} // namespace

class TestIcons : public guitest::MainWindowTest
{
    Q_OBJECT

private slots:
    void keepsItsShapeInContrast_data()
    {
        columns<QString, int, QRgb>("file", "size", "background");
        for (const QString& file : QDir(QStringLiteral(":/icons")).entryList()) {
            for (const int size : {16, 24}) {
                // Qt's own light and dark window colours.
                for (const QRgb background : {qRgb(239, 239, 239), qRgb(53, 53, 53)}) {
                    QTest::addRow("%s %d on %02x", qPrintable(file), size, qRed(background))
                        << file << size << background;
                }
            }
        }
    }

    /// The pixels with a contrast of at least 4.5 are a fifth of the icon and span two thirds of
    /// its width and height; the rest are the fills on light backgrounds and the outline on dark
    /// ones.
    void keepsItsShapeInContrast()
    {
        QFETCH(const QString, file);
        QFETCH(const int, size);
        QFETCH(const QRgb, background);
        const QIcon icon(QStringLiteral(":/icons/") + file);
        const QImage image = painted(icon, size, QIcon::Normal, background);
        const auto [drawn, whole] =
            pixels(image, [background](QRgb colour) { return colour != background; });
        const auto [clear, shape] = pixels(
            image, [background](QRgb colour) { return contrast(colour, background) >= 4.5; });
        QVERIFY2(clear >= drawn / 5, qPrintable(QStringLiteral("%1 of %2").arg(clear).arg(drawn)));
        QVERIFY2(shape.width() >= whole.width() * 2 / 3 && shape.height() >= whole.height() * 2 / 3,
                 qPrintable(QStringLiteral("%1x%2 of %3x%4")
                                .arg(shape.width())
                                .arg(shape.height())
                                .arg(whole.width())
                                .arg(whole.height())));
    }

    /// Tool bars at 100, 125, 150, 175 and 200 percent; a pixmap of another size would be blurred.
    void hasAPixmapForEachScale()
    {
        for (const QString& file : QDir(QStringLiteral(":/icons")).entryList()) {
            const QList<QSize> sizes = QIcon(QStringLiteral(":/icons/") + file).availableSizes();
            for (const int size : {16, 20, 24, 30, 32, 36, 42, 48}) {
                QVERIFY2(sizes.contains(QSize(size, size)),
                         qPrintable(QStringLiteral("%1 %2").arg(file).arg(size)));
            }
        }
    }

    void disabledActionIsPlainToSee_data()
    {
        columns<QByteArray, QRgb>("action", "background");
        for (const char* action : {"actionSave", "actionEdit", "actionFind"}) {
            QTest::addRow("%s, light", action) << QByteArray(action) << qRgb(239, 239, 239);
            QTest::addRow("%s, dark", action) << QByteArray(action) << qRgb(53, 53, 53);
        }
    }

    /// A disabled icon has no colour, and nowhere half the contrast of the enabled one; it is
    /// visible nevertheless.
    void disabledActionIsPlainToSee()
    {
        QFETCH(const QByteArray, action);
        QFETCH(const QRgb, background);
        start("ASRL1::INSTR\n");
        const QIcon icon = this->action(action.constData()).icon();
        double enabled = 1;
        double disabled = 1;
        const QImage off = painted(icon, 24, QIcon::Disabled, background);
        pixels(painted(icon, 24, QIcon::Normal, background), [&](QRgb colour) {
            enabled = std::max(enabled, contrast(colour, background));
            return false;
        });
        pixels(off, [&](QRgb colour) {
            disabled = std::max(disabled, contrast(colour, background));
            return false;
        });
        const QString figures = QStringLiteral("%1, %2").arg(enabled).arg(disabled);
        QVERIFY2(disabled <= enabled / 2, qPrintable(figures));
        QVERIFY2(disabled >= 1.3, qPrintable(figures));
        const int coloured =
            pixels(off, [](QRgb colour) {
                return std::max({qRed(colour), qGreen(colour), qBlue(colour)}) -
                           std::min({qRed(colour), qGreen(colour), qBlue(colour)}) >
                       8;
            }).first;
        QCOMPARE(coloured, 0);
    }
};

static const guitest::Registration<TestIcons> s_registerIcons;
#include "TestIcons.moc"
