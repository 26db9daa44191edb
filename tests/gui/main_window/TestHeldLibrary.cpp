// SPDX-License-Identifier: MIT
// The main window while the search that it has started does not come back.
#include "gui/PropertyDialog.h"
#include "gui/RsrcStringEditor.h"
#include "tests/gui/main_window/MainWindowCase.h"
#include "tests/gui/shared/WindowTest.h"
#include "tests/support/Files.h"
#include "tests/support/ModalWindows.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QPushButton>

#include <functional>
#include <optional>

class TestHeldLibrary : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void allButFindingWorks_data();
    void allButFindingWorks();

private:
    void tearDown() override;
    /// Calls the action, works in the dialog that it opens, and accepts it.
    template <typename Dialog>
    void use(const char* action, const std::function<void(Dialog&)>& work);

    std::optional<guitest::MainWindowCase> m_case;
};

void TestHeldLibrary::tearDown()
{
    if (m_case) {
        // Whatever the case came to, its scan must end.
        support::writeFile(m_case->bench().pathFor("go"), "");
    }
    m_case.reset();
}

template <typename Dialog>
void TestHeldLibrary::use(const char* action, const std::function<void(Dialog&)>& work)
{
    const support::ModalAnswer<Dialog> modal([&work](Dialog& dialog) {
        work(dialog);
        auto& box = support::child<QDialogButtonBox>(dialog, "buttonBox");
        QTest::mouseClick(box.button(QDialogButtonBox::Ok), Qt::LeftButton);
    });
    m_case->click(action);
    QVERIFY(modal.wasShown());
}

void TestHeldLibrary::allButFindingWorks_data()
{
    QTest::addColumn<QByteArray>("hold");
    QTest::addColumn<std::size_t>("callsBefore");
    QTest::newRow("search") << QByteArray("wait-for-file go for=?*") << std::size_t{3};
    // With one serial port, the search for those takes one step.
    QTest::newRow("second step") << QByteArray("wait-for-file go call=viFindNext at=2")
                                 << std::size_t{5};
    QTest::newRow("second attribute")
        << QByteArray("wait-for-file go call=viSetAttribute at=2") << std::size_t{2};
}

void TestHeldLibrary::allButFindingWorks()
{
    QFETCH(const QByteArray, hold);
    QFETCH(const std::size_t, callsBefore);
    m_case.emplace(configuration(), "A=ASRL7::INSTR\nGPIB0::1::INSTR\n",
                   "resource ASRL7::INSTR\nresource GPIB0::1::INSTR\nresource GPIB0::2::INSTR\n" +
                       hold.toStdString() + "\n");
    m_case->show();
    QTRY_COMPARE_WITH_TIMEOUT(m_case->bench().calls().size(), callsBefore, 60000);

    m_case->editCell(1, 1, "typed");
    m_case->clickCell(0, 0);
    m_case->click("actionRemove_resource");
    use<gui::RsrcStringEditor>("actionAdd_Resource", [](gui::RsrcStringEditor& composer) {
        composer.setRsrcString(QStringLiteral("USB0::1::2::3::INSTR"));
        composer.setAlias(QStringLiteral("added"));
    });
    m_case->clickCell(0, 0);
    use<gui::RsrcStringEditor>("actionEdit", [](gui::RsrcStringEditor& composer) {
        QCOMPARE(composer.getAlias(), QStringLiteral("typed"));
        composer.setAlias(QStringLiteral("edited"));
    });
    use<gui::PropertyDialog>("actionEdit_properties", [](gui::PropertyDialog& properties) {
        const auto& ports = support::child<QComboBox>(properties, "comboBoxSerialInterface");
        QCOMPARE(ports.currentText(), QStringLiteral("ASRL7::INSTR"));
        support::child<QComboBox>(properties, "comboBoxQvParity").setCurrentIndex(2);
    });
    m_case->click("actionSave");
    const std::string saved = configuration().read();
    const std::string beginning = support::ConfigurationFixture::header() +
                                  ":Provider=3674\n"
                                  ":SerialProperty[DeviceNo=7].Baudrate=9600\n"
                                  ":SerialProperty[DeviceNo=7].DataBits=8\n"
                                  ":SerialProperty[DeviceNo=7].StopBits=0\n"
                                  ":SerialProperty[DeviceNo=7].Parity=2\n"
                                  ":SerialProperty[DeviceNo=7].FlowControl=0\n";
    // Which alias comes first is the table's affair.
    const std::string added = "added=USB0::1::2::3::INSTR\n";
    const std::string edited = "edited=ASRL7::INSTR\n";
    QVERIFY2(saved == beginning + added + edited || saved == beginning + edited + added,
             saved.c_str());
    m_case->click("actionClose");
    QVERIFY(!m_case->window().isVisible());
}

static const guitest::Registration<TestHeldLibrary> s_registration;
#include "TestHeldLibrary.moc"
