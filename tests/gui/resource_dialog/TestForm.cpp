// SPDX-License-Identifier: MIT
// The parts of the find dialog, its size and position, and its use by keys.
#include "tests/gui/common/CutOff.h"
#include "tests/gui/common/FontSize.h"
#include "tests/gui/common/FormText.h"
#include "tests/gui/common/Settings.h"
#include "tests/gui/resource_dialog/ResourceDialogTest.h"

class TestForm : public guitest::ResourceDialogTest
{
    Q_OBJECT

private slots:
    void formIsAsInTheFile()
    {
        show();
        const QString difference = guitest::differenceFrom(
            QStringLiteral("resource_dialog/form.txt"), guitest::formText(dialog()));
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
    }

    void noTextIsCutOff_data()
    {
        QTest::addColumn<int>("pixels");
        QTest::newRow("usual font size") << int{guitest::FontSize::usual};
        QTest::newRow("large font size") << int{guitest::FontSize::large};
    }

    void noTextIsCutOff()
    {
        QFETCH(const int, pixels);
        const guitest::FontSize fontSize(pixels);
        open();
        QCOMPARE(dialog().size(), QSize(492, 386));
        QCOMPARE(guitest::cutOffParts(dialog(), 3), QStringList());
        QVERIFY(list().height() > dialog().height() / 2);
    }

    void everyHideWritesTheSettings()
    {
        show();
        QVERIFY(!stored("size").isValid());
        dialog().setGeometry(31, 42, 501, 402);
        dialog().hide();
        QCOMPARE(settingsFile(), QStringLiteral("[ResourceDialog]\n"
                                                "fullscreen=false\n"
                                                "pos=@Point(%1 %2)\n"
                                                "size=@Size(501 402)\n")
                                     .arg(dialog().x())
                                     .arg(dialog().y()));
        show();
        dialog().resize(511, 412);
        dialog().hide();
        QCOMPARE(stored("size").toSize(), QSize(511, 412));
    }

    void everyShowRestoresTheSettings()
    {
        QCOMPARE(dialog().size(), QSize(492, 386));
        for (const int step : {0, 20}) {
            const QSize size(601 + step, 402);
            const QPoint position(21, 22 - 2 * step);
            guitest::store(QStringLiteral("ResourceDialog"), "size", size);
            guitest::store(QStringLiteral("ResourceDialog"), "pos", position);
            show();
            QCOMPARE(dialog().size(), size);
            QCOMPARE(dialog().pos(), position);
            dialog().hide();
        }
    }

    void maximisedDialogOpensMaximised()
    {
        show();
        dialog().showMaximized();
        dialog().hide();
        QCOMPARE(stored("fullscreen").toBool(), true);
        open();
        QVERIFY(dialog().isMaximized());
    }

    void keysRefreshSelectAndAccept()
    {
        show();
        const auto tabTo = [](const QWidget* widget) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), widget);
        };
        QTRY_COMPARE(QApplication::focusWidget(), &list());
        for (const QWidget* next :
             {static_cast<QWidget*>(&refresh()),
              static_cast<QWidget*>(box().button(QDialogButtonBox::Ok)),
              static_cast<QWidget*>(box().button(QDialogButtonBox::Cancel)),
              static_cast<QWidget*>(&list()), static_cast<QWidget*>(&refresh())}) {
            tabTo(next);
        }
        QTest::keyClick(&refresh(), Qt::Key_Space);
        QVERIFY(!bench().calls().empty());
        list().setFocus();
        // The first key selects the first entry.
        QTest::keyClick(&list(), Qt::Key_Down);
        QTest::keyClick(&list(), Qt::Key_Down);
        QTest::keyClick(&list(), Qt::Key_Return);
        QCOMPARE(dialog().result(), int{QDialog::Accepted});
        QCOMPARE(dialog().getResource(), QStringLiteral("b"));
    }

private:
    void setUp() override
    {
        scan("resource a\nresource b\n");
        construct();
    }
    static QVariant stored(const char* key)
    {
        return guitest::stored(QStringLiteral("ResourceDialog"), key);
    }
};

static const guitest::Registration<TestForm> s_registerForm;
#include "TestForm.moc"
