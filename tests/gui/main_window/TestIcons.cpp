// SPDX-License-Identifier: MIT
// The icons as they are drawn on light and on dark backgrounds, enabled and disabled.
#include "tests/gui/main_window/MainWindowTest.h"

#include <QDir>
#include <QIcon>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

/// Qt's own light and dark window colours.
const QRgb s_backgrounds[] = {qRgb(239, 239, 239), qRgb(53, 53, 53)};

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
    const auto [darker, brighter] = std::minmax({luminance(one), luminance(other)});
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

/// The contrast of an image's pixels to the background.
struct Contrasts
{
    Contrasts(const QImage& image, QRgb background)
    {
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const double value = contrast(image.pixel(x, y), background);
                greatest = std::max(greatest, value);
                if (value > 1) {
                    ++drawn;
                    drawnArea |= QRect(x, y, 1, 1);
                }
                if (value >= 4.5) {
                    ++clear;
                    clearArea |= QRect(x, y, 1, 1);
                }
            }
        }
    }

    double greatest = 1;
    /// How many pixels differ from the background, and the rectangle around them.
    int drawn = 0;
    QRect drawnArea;
    /// The same for those with a contrast of at least 4.5.
    int clear = 0;
    QRect clearArea;
};

} // namespace

class TestIcons : public guitest::MainWindowTest
{
    Q_OBJECT

private slots:
    void theseAreCompiledIn()
    {
        const QStringList names =
            QDir(QStringLiteral(":/icons")).entryList(QDir::Files, QDir::Name);
        QCOMPARE(names.join(QLatin1Char(' ')),
                 QStringLiteral("ConfigureItem.ico Edit_trans4d09c5d42eda5.ico "
                                "Einstellun4d09c60e647ef.ico Minus.ico Neu_transp4d09c92bc222a.ico "
                                "Power_Off4e1edc2c60f47.ico Raute_farb4d09ca48d1602.ico "
                                "Repeat4dfa017b54ff3.ico Speichern_4d09cb08d5fcd.ico "
                                "Suchen_tra4d09cbe82cb7b.ico"));
    }

    void keepsItsShapeInContrast_data() { eachIcon(); }

    /// The pixels with a contrast of at least 4.5 are a fifth of the icon and span two thirds of
    /// its width and height; the rest are the fills on light backgrounds and the outline on dark
    /// ones.
    void keepsItsShapeInContrast()
    {
        for (const int size : {16, 24}) {
            for (const QRgb background : s_backgrounds) {
                const Contrasts icon(painted(this->icon(), size, QIcon::Normal, background),
                                     background);
                QVERIFY(icon.drawn > 0 && icon.clear >= icon.drawn / 5);
                QVERIFY(icon.clearArea.width() >= icon.drawnArea.width() * 2 / 3);
                QVERIFY(icon.clearArea.height() >= icon.drawnArea.height() * 2 / 3);
            }
        }
    }

    void hasAPixmapForEachScale_data() { eachIcon(); }

    /// Tool bars at 100, 125, 150, 175 and 200 percent; a pixmap of another size would be blurred.
    void hasAPixmapForEachScale()
    {
        for (const int size : {16, 20, 24, 30, 32, 36, 42, 48}) {
            QVERIFY2(icon().availableSizes().contains(QSize(size, size)),
                     qPrintable(QString::number(size)));
        }
    }

    void disabledActionIsPlainToSee_data()
    {
        QTest::addColumn<QByteArray>("action");
        for (const char* action : {"actionSave", "actionEdit", "actionFind"}) {
            QTest::newRow(action) << QByteArray(action);
        }
    }

    /// A disabled icon has no colour, and nowhere half the contrast of the enabled one; it is
    /// visible nevertheless.
    void disabledActionIsPlainToSee()
    {
        QFETCH(const QByteArray, action);
        start("ASRL1::INSTR\n");
        const QIcon icon = this->action(action.constData()).icon();
        for (const QRgb background : s_backgrounds) {
            const QImage off = painted(icon, 24, QIcon::Disabled, background);
            const QImage on = painted(icon, 24, QIcon::Normal, background);
            const double enabled = Contrasts(on, background).greatest;
            const double disabled = Contrasts(off, background).greatest;
            QVERIFY2(disabled >= 1.3 && disabled <= enabled / 2,
                     qPrintable(QStringLiteral("%1, %2").arg(enabled).arg(disabled)));
            QVERIFY(off.allGray());
        }
    }

private:
    static void eachIcon()
    {
        QTest::addColumn<QString>("file");
        for (const QFileInfo& file : QDir(QStringLiteral(":/icons")).entryInfoList()) {
            QTest::newRow(qPrintable(file.fileName())) << file.filePath();
        }
    }
    static QIcon icon()
    {
        QFETCH(const QString, file);
        return QIcon(file);
    }
};

static const guitest::Registration<TestIcons> s_registerIcons;
#include "TestIcons.moc"
