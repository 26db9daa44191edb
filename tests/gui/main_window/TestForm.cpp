// SPDX-License-Identifier: MIT
// The parts of the main window, and the icons that all windows use.
#include "tests/gui/common/FormText.h"
#include "tests/gui/main_window/MainWindowTest.h"

#include <QDir>
#include <QHeaderView>
#include <QIcon>

#include <set>

class TestForm : public guitest::MainWindowTest
{
    Q_OBJECT

private slots:
    void formIsAsInTheFile()
    {
        const QString difference = guitest::differenceFrom(QStringLiteral("main_window/form.txt"),
                                                           guitest::formText(window()));
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
    }

    void lastColumnStretchesWithTheWindow()
    {
        const QHeaderView& header = *table().horizontalHeader();
        QVERIFY(header.stretchLastSection());
        QCOMPARE(header.length(), table().viewport()->width());
        // No resize mode is set: the user can widen the first column.
        QCOMPARE(header.sectionResizeMode(0), QHeaderView::Interactive);
        QCOMPARE(header.sectionResizeMode(1), QHeaderView::Interactive);
        window().resize(700, 400);
        QTRY_COMPARE(header.length(), table().viewport()->width());
    }

    void columnsFitTheirContents()
    {
        start("A=TCPIP0::a-very-long-host-name.example.org::inst0::INSTR\n");
        const int width = table().columnWidth(0);
        QVERIFY(width > QFontMetrics(table().font()).horizontalAdvance(text(0, 0)));
        table().resizeColumnsToContents();
        QCOMPARE(table().columnWidth(0), width);
    }

    void rightClickOnTheToolBarOpensNoMenu()
    {
        auto& bar = support::child<QToolBar>(window(), "toolBar");
        QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(2, 2),
                                bar.mapToGlobal(QPoint(2, 2)));
        QCoreApplication::sendEvent(&bar, &event);
        QCOMPARE(QApplication::activePopupWidget(), nullptr);
    }

    /// QItemSelection is a registered meta type.
    void selectionChangesCanBeQueued()
    {
        action("actionFind").setEnabled(true);
        QVERIFY(QMetaObject::invokeMethod(&window(), "selectionChanged", Qt::QueuedConnection,
                                          Q_ARG(QItemSelection, QItemSelection()),
                                          Q_ARG(QItemSelection, QItemSelection())));
        QVERIFY(isEnabled("actionFind"));
        QTRY_VERIFY(!isEnabled("actionFind"));
    }

    void tenDifferentIconsAreCompiledIn()
    {
        const QStringList names =
            QDir(QStringLiteral(":/icons")).entryList(QDir::Files, QDir::Name);
        QCOMPARE(names.join(QLatin1Char(' ')),
                 QStringLiteral("ConfigureItem.ico Edit_trans4d09c5d42eda5.ico "
                                "Einstellun4d09c60e647ef.ico Minus.ico Neu_transp4d09c92bc222a.ico "
                                "Power_Off4e1edc2c60f47.ico Raute_farb4d09ca48d1602.ico "
                                "Repeat4dfa017b54ff3.ico Speichern_4d09cb08d5fcd.ico "
                                "Suchen_tra4d09cbe82cb7b.ico"));
        for (const int side : {16, 24, 32, 48}) {
            std::set<QByteArray> pictures;
            for (const QString& name : names) {
                const QImage image =
                    QIcon(QStringLiteral(":/icons/") + name).pixmap(side, side).toImage();
                QCOMPARE(image.size(), QSize(side, side));
                QVERIFY2(image.convertToFormat(QImage::Format_Indexed8).colorCount() > 1,
                         qPrintable(name));
                pictures.insert(QByteArray(reinterpret_cast<const char*>(image.constBits()),
                                           int(image.sizeInBytes())));
            }
            QCOMPARE(pictures.size(), std::size_t(names.size()));
        }
    }

private:
    void setUp() override { start("GPIB0::1::INSTR\nA=ASRL1::INSTR\n"); }
};

static const guitest::Registration<TestForm> s_registerForm;
#include "TestForm.moc"
