// SPDX-License-Identifier: MIT
#include "gui/MainWindow.h"
#include "gui/PropertyDialog.h"
#include "tests/gui/shared/RecordTexts.h"
#include "tests/gui/shared/WindowTest.h"
#include "tests/support/BenchFixture.h"
#include "tests/support/Children.h"
#include "tests/support/ModalWindows.h"

#include <QAction>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QTableView>
#include <QTabWidget>
#include <QToolBar>

using support::child;

namespace {

constexpr const char* s_lines = ":Provider=4095\n"
                                ":SerialProperty[DeviceNo=1].Baudrate=300\n"
                                ":SerialProperty[DeviceNo=1].DataBits=7\n"
                                ":SerialProperty[DeviceNo=1].StopBits=2\n"
                                ":SerialProperty[DeviceNo=1].Parity=1\n"
                                ":SerialProperty[DeviceNo=1].FlowControl=6\n";

/// The main window over a configuration file with a provider and one port.
class WindowCase
{
public:
    explicit WindowCase(support::ConfigurationFixture& configuration)
        : m_bench("resource ASRL1::INSTR\n"),
          m_window(configured(configuration))
    {
        m_window.show();
    }

    gui::MainWindow& window() { return m_window; }
    ConfigurationModel& model()
    {
        auto* shown = child<QTableView>(m_window, "resourceView").model();
        return *qobject_cast<ConfigurationModel*>(shown);
    }
    QAction& action(const char* name) { return child<QAction>(m_window, name); }

    /// Clicks the tool bar's button; false when the properties dialog did not come up.
    bool editProperties(const std::function<void(gui::PropertyDialog&)>& edit)
    {
        const support::ModalAnswer<gui::PropertyDialog> answer(edit);
        const auto& toolBar = child<QToolBar>(m_window, "toolBar");
        QTest::mouseClick(toolBar.widgetForAction(&action("actionEdit_properties")),
                          Qt::LeftButton);
        return answer.wasShown();
    }

private:
    static QWidget* configured(support::ConfigurationFixture& configuration)
    {
        QSettings().clear();
        configuration.write(s_lines);
        return nullptr;
    }

    support::BenchFixture m_bench;
    gui::MainWindow m_window;
};

void click(gui::PropertyDialog& dialog, QDialogButtonBox::StandardButton button)
{
    QTest::mouseClick(child<QDialogButtonBox>(dialog, "buttonBox").button(button), Qt::LeftButton);
}

void typeProvider(gui::PropertyDialog& dialog, const QString& provider)
{
    child<QTabWidget>(dialog, "tabWidget").setCurrentIndex(1);
    auto& field = child<QLineEdit>(dialog, "providerEdit");
    field.setFocus();
    field.selectAll();
    QTest::keyClicks(&field, provider);
}

} // namespace

/// "Edit properties" in the main window.
class TestProperties : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void opensTheDialogOnTheModel();
    void okMakesTheModelDirty();
    void okWithoutAnEditKeepsItClean();
    void cancelChangesNothing();
    void opensAgainWithWhatOkLeft();
    void savedPropertiesReachTheFile();
};

void TestProperties::opensTheDialogOnTheModel()
{
    WindowCase test(configuration());
    QString shown;
    const QWidget* parent = nullptr;
    bool isModal = false;
    QVERIFY(test.editProperties([&](gui::PropertyDialog& dialog) {
        parent = dialog.parentWidget();
        isModal = dialog.isModal() && QGuiApplication::modalWindow() == dialog.windowHandle();
        shown = child<QLineEdit>(dialog, "providerEdit").text() + QLatin1Char(' ') +
                child<QComboBox>(dialog, "comboBoxQvBaudrate").currentText();
    }));
    QCOMPARE(shown, QStringLiteral("4095 300"));
    QCOMPARE(parent, &test.window());
    QVERIFY(isModal);
    QVERIFY(test.window().findChildren<gui::PropertyDialog*>().isEmpty());
}

void TestProperties::okMakesTheModelDirty()
{
    WindowCase test(configuration());
    QVERIFY(!test.action("actionSave").isEnabled());
    QVERIFY(test.editProperties([](gui::PropertyDialog& dialog) {
        typeProvider(dialog, QStringLiteral("42"));
        click(dialog, QDialogButtonBox::Ok);
    }));
    QCOMPARE(int(test.model().getProvider()), 42);
    QVERIFY(test.action("actionSave").isEnabled());
}

void TestProperties::okWithoutAnEditKeepsItClean()
{
    WindowCase test(configuration());
    QVERIFY(test.editProperties(
        [](gui::PropertyDialog& dialog) { click(dialog, QDialogButtonBox::Ok); }));
    QVERIFY(!test.model().isDirty());
    QVERIFY(!test.action("actionSave").isEnabled());
}

void TestProperties::cancelChangesNothing()
{
    WindowCase test(configuration());
    QVERIFY(test.editProperties([](gui::PropertyDialog& dialog) {
        typeProvider(dialog, QStringLiteral("42"));
        child<QComboBox>(dialog, "comboBoxQvBaudrate").setCurrentIndex(4);
        click(dialog, QDialogButtonBox::Cancel);
    }));
    QCOMPARE(int(test.model().getProvider()), 4095);
    QCOMPARE(guitest::text(test.model().getSerialProperties()), QStringLiteral("1=300,7,2,1,6"));
    QVERIFY(!test.model().isDirty());
}

void TestProperties::opensAgainWithWhatOkLeft()
{
    WindowCase test(configuration());
    QVERIFY(test.editProperties([](gui::PropertyDialog& dialog) {
        typeProvider(dialog, QStringLiteral("99999"));
        click(dialog, QDialogButtonBox::Ok);
    }));
    QString shown;
    QVERIFY(test.editProperties([&shown](gui::PropertyDialog& dialog) {
        shown = child<QLineEdit>(dialog, "providerEdit").text();
    }));
    QCOMPARE(shown, QStringLiteral("34463"));
}

void TestProperties::savedPropertiesReachTheFile()
{
    WindowCase test(configuration());
    QVERIFY(test.editProperties([](gui::PropertyDialog& dialog) {
        child<QLineEdit>(dialog, "providerEdit").clear();
        child<QComboBox>(dialog, "comboBoxQvBaudrate").setCurrentIndex(1);
        dialog.addDevice();
        click(dialog, QDialogButtonBox::Ok);
    }));
    test.action("actionSave").trigger();
    const QString file = QString::fromStdString(configuration().read());
    QVERIFY2(file.contains(QLatin1String(":Provider=3674\n")), qPrintable(file));
    QVERIFY2(file.contains(QLatin1String("SerialProperty[DeviceNo=1].Baudrate=600\n")),
             qPrintable(file));
    QVERIFY2(file.contains(QLatin1String("SerialProperty[DeviceNo=1].Parity=1\n")),
             qPrintable(file));
    // Boards are never written.
    QVERIFY2(!file.contains(QLatin1String("PrimaryAddress")), qPrintable(file));
}

static const guitest::Registration<TestProperties> s_registration;

#include "TestProperties.moc"
