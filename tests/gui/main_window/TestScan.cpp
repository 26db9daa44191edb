// SPDX-License-Identifier: MIT
// The search that the main window starts on a thread of its own.
#include "gui/PropertyDialog.h"
#include "gui/ResourceDialog.h"
#include "gui/RsrcStringEditor.h"
#include "tests/gui/common/BlockedThread.h"
#include "tests/gui/main_window/MainWindowTest.h"
#include "tests/support/Files.h"

#include <QComboBox>
#include <QSettings>

#include <atomic>
#include <filesystem>
#include <string>
#include <thread>

class TestScan : public guitest::MainWindowTest
{
    Q_OBJECT

private slots:
    void eachWindowSearchesOnce()
    {
        start("", "resource USB0::1::2::3::INSTR\nresource ASRL1::INSTR\n");
        click("actionClose");
        destroy();
        QCOMPARE(bench().calls().size(), std::size_t{7});
        QCOMPARE(found(), QStringLiteral("ASRL1::INSTR USB0::1::2::3::INSTR"));
        start("");
        destroy();
        QCOMPARE(found(), QString());
    }

    void windowWorksWhileTheLibraryIsHeld_data()
    {
        columns<QByteArray, std::size_t>("hold", "callsBefore");
        QTest::newRow("search") << QByteArray("wait-for-file go for=?*") << std::size_t{3};
        // The search for serial ports finds one and so never takes a second step.
        QTest::newRow("second step")
            << QByteArray("wait-for-file go call=viFindNext at=2") << std::size_t{5};
        QTest::newRow("second attribute")
            << QByteArray("wait-for-file go call=viSetAttribute at=2") << std::size_t{2};
    }

    void windowWorksWhileTheLibraryIsHeld()
    {
        QFETCH(const QByteArray, hold);
        QFETCH(const std::size_t, callsBefore);
        start("A=ASRL7::INSTR\nGPIB0::1::INSTR\n",
              "resource ASRL7::INSTR\nresource GPIB0::1::INSTR\nresource GPIB0::2::INSTR\n" +
                  hold.toStdString() + "\n");
        QTRY_COMPARE_WITH_TIMEOUT(bench().calls().size(), callsBefore, 60000);

        editCell(1, 1, "typed");
        clickCell(0, 0);
        click("actionRemove_resource");
        clickAndAnswer<gui::RsrcStringEditor>("actionAdd_Resource", [](auto& composer) {
            composer.setRsrcString(QStringLiteral("USB0::1::2::3::INSTR"));
            guitest::clickButton(composer, QDialogButtonBox::Ok);
        });
        clickCell(0, 0);
        clickAndAnswer<gui::RsrcStringEditor>("actionEdit", [](auto& composer) {
            composer.setAlias(QStringLiteral("edited"));
            guitest::clickButton(composer, QDialogButtonBox::Ok);
        });
        clickAndAnswer<gui::PropertyDialog>("actionEdit_properties", [](auto& properties) {
            const auto& ports = support::child<QComboBox>(properties, "comboBoxSerialInterface");
            QCOMPARE(ports.currentText(), QStringLiteral("ASRL7::INSTR"));
            guitest::clickButton(properties, QDialogButtonBox::Ok);
        });
        click("actionSave");
        QCOMPARE(configuration().read(), file(":Provider=3674\n"
                                              ":SerialProperty[DeviceNo=7].Baudrate=9600\n"
                                              ":SerialProperty[DeviceNo=7].DataBits=8\n"
                                              ":SerialProperty[DeviceNo=7].StopBits=0\n"
                                              ":SerialProperty[DeviceNo=7].Parity=0\n"
                                              ":SerialProperty[DeviceNo=7].FlowControl=0\n"
                                              "USB0::1::2::3::INSTR\n"
                                              "edited=ASRL7::INSTR\n"));
        click("actionClose");
        QVERIFY(!window().isVisible());
        // The search has not returned yet.
        QCOMPARE(found(), QString());
    }

    void destructorWaitsForTheSearchAndThenSavesTheSettings()
    {
        start("", "resource GPIB0::1::INSTR\nwait-for-file go\n");
        click("actionClose");
        QTRY_COMPARE(bench().calls().size(), std::size_t{3});

        const std::filesystem::path go = bench().pathFor("go");
        const std::string settings = QSettings().fileName().toStdString();
        const auto isSaved = [&settings] {
            return std::filesystem::exists(settings) &&
                   support::readFile(settings).find("[MainWindow]") != std::string::npos;
        };
        std::atomic<bool> isDestroyed{false};
        std::atomic<bool> waited{false};
        std::atomic<bool> hadSaved{false};
        const guitest::BlockedThread guiThread;
        std::thread releaser([&] {
            while (!guiThread.isBlocked() && !isDestroyed) {
                std::this_thread::yield();
            }
            hadSaved = isSaved();
            waited = !isDestroyed;
            support::writeFile(go, "");
        });
        destroy();
        isDestroyed = true;
        releaser.join();
        QVERIFY(waited);
        QVERIFY(!hadSaved);
        QVERIFY(isSaved());
        QCOMPARE(bench().calls().size(), std::size_t{6});
        QCOMPARE(found(), QStringLiteral("GPIB0::1::INSTR"));
    }

private:
    static QString found()
    {
        const gui::ResourceDialog dialog(nullptr);
        return guitest::listed(support::child<QListWidget>(dialog, "rsrcList"));
    }
};

static const guitest::Registration<TestScan> s_registerScan;
#include "TestScan.moc"
