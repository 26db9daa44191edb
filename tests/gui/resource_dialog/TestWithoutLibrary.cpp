// SPDX-License-Identifier: MIT
// The find dialog on a machine without a VISA library.
#include "tests/gui/resource_dialog/ResourceDialogTest.h"

class TestWithoutLibrary : public guitest::ResourceDialogTest
{
    Q_OBJECT

public:
    TestWithoutLibrary() : ResourceDialogTest(Visa::None) {}

private slots:
    void searchAndRefreshListNothing()
    {
        gui::ResourceDialog::updateResourceList();
        open();
        QCOMPARE(list().count(), 0);
        list().addItem(QStringLiteral("of the test"));
        clickRefresh();
        QCOMPARE(list().count(), 0);
        QVERIFY(refresh().isEnabled() && box().isEnabled());
        guitest::clickButton(dialog(), QDialogButtonBox::Ok);
        QCOMPARE(dialog().result(), int{QDialog::Accepted});
        QCOMPARE(dialog().getResource(), QString());
    }
};

static const guitest::Registration<TestWithoutLibrary> s_registerWithoutLibrary;
#include "TestWithoutLibrary.moc"
