// SPDX-License-Identifier: MIT
// The find dialog on a machine without a VISA library.
#include "tests/gui/GuiTestMain.h"
#include "tests/gui/ResourceDialogCase.h"
#include "tests/support/QtWarnings.h"
#include "visa/VisaLibrary.h"

using guitest::ResourceDialogCase;

class TestResourceDialogAlone : public QObject
{
    Q_OBJECT

public:
    explicit TestResourceDialogAlone(const support::ConfigurationFixture&) {}

private slots:
    void initTestCase();
    void listsNothing();
    void refreshListsNothing();
};

void TestResourceDialogAlone::initTestCase()
{
    if (visa::VisaLibrary::instance().isFound()) {
        QSKIP("this machine has a VISA library");
    }
}

void TestResourceDialogAlone::listsNothing()
{
    const support::QtWarnings warnings;
    gui::ResourceDialog::updateResourceList();
    ResourceDialogCase find;
    find.show();
    QCOMPARE(find.list().count(), 0);
    find.click(QDialogButtonBox::Ok);
    QCOMPARE(find.dialog().result(), int{QDialog::Accepted});
    QCOMPARE(find.dialog().getResource(), QString());
    QCOMPARE(warnings.all(), QStringList());
}

void TestResourceDialogAlone::refreshListsNothing()
{
    const support::QtWarnings warnings;
    ResourceDialogCase find;
    find.show();
    find.list().addItem(QStringLiteral("of the test"));
    find.clickRefresh();
    QCOMPARE(find.list().count(), 0);
    QVERIFY(find.refresh().isEnabled() && find.box().isEnabled());
    QCOMPARE(warnings.all(), QStringList());
}

int main(int argc, char* argv[])
{
    return guitest::run<TestResourceDialogAlone>(argc, argv);
}
#include "TestResourceDialogAlone.moc"
