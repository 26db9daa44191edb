// SPDX-License-Identifier: MIT
// The find dialog on a machine without a VISA library.
#include "tests/gui/resource_dialog/ResourceDialogCase.h"
#include "tests/gui/shared/WindowTest.h"

using guitest::ResourceDialogCase;

class TestWithoutLibrary : public guitest::WindowTest
{
    Q_OBJECT

public:
    TestWithoutLibrary() : WindowTest(Visa::None) {}

private slots:
    void listsNothing();
    void refreshListsNothing();
};

void TestWithoutLibrary::listsNothing()
{
    gui::ResourceDialog::updateResourceList();
    ResourceDialogCase find;
    find.show();
    QCOMPARE(find.list().count(), 0);
    find.click(QDialogButtonBox::Ok);
    QCOMPARE(find.dialog().result(), int{QDialog::Accepted});
    QCOMPARE(find.dialog().getResource(), QString());
}

void TestWithoutLibrary::refreshListsNothing()
{
    ResourceDialogCase find;
    find.show();
    find.list().addItem(QStringLiteral("of the test"));
    find.clickRefresh();
    QCOMPARE(find.list().count(), 0);
    QVERIFY(find.refresh().isEnabled() && find.box().isEnabled());
}

static const guitest::Registration<TestWithoutLibrary> s_registration;
#include "TestWithoutLibrary.moc"
