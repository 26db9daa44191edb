// SPDX-License-Identifier: MIT
// How the composer is filled, answered and read, and what it remembers.
#include "gui/ResourceDialog.h"
#include "tests/gui/rsrc_string_editor/ComposerCase.h"
#include "tests/gui/shared/WindowTest.h"
#include "tests/support/BenchFixture.h"
#include "tests/support/ModalWindows.h"

#include <QDialogButtonBox>
#include <QListWidget>
#include <QPushButton>
#include <QToolButton>

#include <functional>
#include <optional>

using guitest::ComposerCase;

namespace {

const QString s_byHand = QStringLiteral("typed by hand");

/// Clicks the find button and answers the dialog that it opens.
void find(ComposerCase& composer, const std::function<void(gui::ResourceDialog&)>& answer)
{
    const support::ModalAnswer<gui::ResourceDialog> modal(answer);
    QTest::mouseClick(&composer.widget<QToolButton>("FindRsrcButton"), Qt::LeftButton);
    QVERIFY(modal.wasShown());
}

void click(const QDialog& dialog, QDialogButtonBox::StandardButton button)
{
    auto& box = support::child<QDialogButtonBox>(dialog, "buttonBox");
    QTest::mouseClick(box.button(button), Qt::LeftButton);
}

} // namespace

class TestUse : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void takesTextsAsTheyAre();
    void handsTextsBackTrimmed();
    void keepsTheFieldsWhenAResourceIsSet();

    void takesAFoundResource();
    void leavesTheResourceWhenFindingIsCancelled();
    void takesAnEmptyResourceWhenNothingIsSelected();

    void answers_data();
    void answers();
    void remembersSizeAndPosition();
    void isNeverMaximisedAgain();
};

void TestUse::takesTextsAsTheyAre()
{
    ComposerCase composer;
    composer.editor().setAlias(QStringLiteral(" my:alias, of old "));
    composer.editor().setRsrcString(QStringLiteral("  not a resource\t"));
    QCOMPARE(composer.text("aliasEdit"), QStringLiteral(" my:alias, of old "));
    QCOMPARE(composer.resource(), QStringLiteral("  not a resource\t"));
}

void TestUse::handsTextsBackTrimmed()
{
    ComposerCase composer;
    composer.editor().setAlias(QStringLiteral(" \tmy alias "));
    composer.editor().setRsrcString(QStringLiteral(" ASRL1::INSTR\t "));
    QCOMPARE(composer.editor().getAlias(), QStringLiteral("my alias"));
    QCOMPARE(composer.editor().getRsrcString(), QStringLiteral("ASRL1::INSTR"));
    composer.type("RsrcEdit", "  ASRL 2 ");
    QCOMPARE(composer.editor().getRsrcString(), QStringLiteral("ASRL 2"));
    composer.editor().setAlias(QStringLiteral("  "));
    composer.editor().setRsrcString(QStringLiteral("  "));
    QCOMPARE(composer.editor().getAlias(), QString());
    QCOMPARE(composer.editor().getRsrcString(), QString());
}

void TestUse::keepsTheFieldsWhenAResourceIsSet()
{
    ComposerCase composer;
    composer.type("IpEdit", "h");
    composer.editor().setRsrcString(QStringLiteral("USB1::0x1::0x2::SN::INSTR"));
    QCOMPARE(composer.types().currentIndex(), 0);
    QCOMPARE(composer.text("IpEdit"), QStringLiteral("h"));
    QCOMPARE(composer.text("BoardEdit"), QStringLiteral("0"));
    QCOMPARE(composer.text("vendorEdit"), QStringLiteral("0x0000"));
    QCOMPARE(composer.text("serialEdit"), QString());
}

void TestUse::takesAFoundResource()
{
    const support::BenchFixture bench("resource ASRL3::INSTR\nresource QVIB::10.0.0.1\n");
    gui::ResourceDialog::updateResourceList();
    ComposerCase composer;
    find(composer, [&composer](gui::ResourceDialog& dialog) {
        QCOMPARE(dialog.parentWidget(), static_cast<QWidget*>(&composer.editor()));
        support::child<QListWidget>(dialog, "rsrcList").setCurrentRow(1);
        click(dialog, QDialogButtonBox::Ok);
    });
    QCOMPARE(composer.resource(), QStringLiteral("QVIB::10.0.0.1"));
    QCOMPARE(composer.types().currentIndex(), 0);
    QCOMPARE(composer.text("IpEdit"), QString());
    // The next keystroke in a field composes again.
    QTest::keyClicks(&composer.edit("IpEdit"), QStringLiteral("h"));
    QCOMPARE(composer.resource(), QStringLiteral("TCPIP0::h::inst0::INSTR"));
}

void TestUse::leavesTheResourceWhenFindingIsCancelled()
{
    const support::BenchFixture bench("resource ASRL3::INSTR\n");
    gui::ResourceDialog::updateResourceList();
    ComposerCase composer;
    composer.editor().setRsrcString(s_byHand);
    find(composer, [](gui::ResourceDialog& dialog) {
        support::child<QListWidget>(dialog, "rsrcList").setCurrentRow(0);
        click(dialog, QDialogButtonBox::Cancel);
    });
    QCOMPARE(composer.resource(), s_byHand);
}

void TestUse::takesAnEmptyResourceWhenNothingIsSelected()
{
    const support::BenchFixture bench("resource ASRL3::INSTR\n");
    gui::ResourceDialog::updateResourceList();
    ComposerCase composer;
    composer.editor().setRsrcString(s_byHand);
    find(composer, [](gui::ResourceDialog& dialog) { click(dialog, QDialogButtonBox::Ok); });
    QCOMPARE(composer.resource(), QString());
}

void TestUse::answers_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("result");
    QTest::newRow("OK") << int{QDialogButtonBox::Ok} << int{QDialog::Accepted};
    QTest::newRow("Cancel") << int{QDialogButtonBox::Cancel} << int{QDialog::Rejected};
    QTest::newRow("Escape") << int{QDialogButtonBox::NoButton} << int{QDialog::Rejected};
}

void TestUse::answers()
{
    QFETCH(const int, button);
    gui::RsrcStringEditor editor(nullptr);
    const support::ModalAnswer<gui::RsrcStringEditor> modal([button](gui::RsrcStringEditor& shown) {
        if (button == QDialogButtonBox::NoButton) {
            QTest::keyClick(&shown, Qt::Key_Escape);
        } else {
            click(shown, static_cast<QDialogButtonBox::StandardButton>(button));
        }
        QVERIFY(!shown.isVisible());
    });
    QTEST(editor.exec(), "result");
    QVERIFY(modal.wasShown());
}

void TestUse::remembersSizeAndPosition()
{
    QSettings().clear();
    {
        gui::RsrcStringEditor editor(nullptr);
        QCOMPARE(editor.size(), QSize(740, 595));
        editor.resize(801, 612);
        editor.move(33, 44);
        QVERIFY(!QSettings().contains(QStringLiteral("RsrcStringEditor/size")));
    }
    QCOMPARE(QSettings().value(QStringLiteral("RsrcStringEditor/size")).toSize(), QSize(801, 612));
    QCOMPARE(QSettings().value(QStringLiteral("RsrcStringEditor/pos")).toPoint(), QPoint(33, 44));
    QVERIFY(!QSettings().contains(QStringLiteral("RsrcStringEditor/fullscreen")));
    const gui::RsrcStringEditor again(nullptr);
    QCOMPARE(again.size(), QSize(801, 612));
    QCOMPARE(again.pos(), QPoint(33, 44));
}

void TestUse::isNeverMaximisedAgain()
{
    QSettings().clear();
    QSettings().setValue(QStringLiteral("RsrcStringEditor/fullscreen"), true);
    QSize maximised;
    {
        gui::RsrcStringEditor editor(nullptr);
        QVERIFY(!editor.isMaximized());
        editor.showMaximized();
        QVERIFY(editor.isMaximized());
        maximised = editor.size();
    }
    gui::RsrcStringEditor again(nullptr);
    QVERIFY(!again.isVisible());
    again.show();
    QVERIFY(!again.isMaximized());
    QCOMPARE(again.size(), maximised);
}

static const guitest::Registration<TestUse> s_registration;
#include "TestUse.moc"
