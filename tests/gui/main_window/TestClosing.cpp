// SPDX-License-Identifier: MIT
// The question about unsaved data, and what each answer does to the file.
#include "tests/gui/main_window/MainWindowTest.h"

#include <QAbstractButton>
#include <QMessageBox>

#include <filesystem>
#include <functional>

namespace {

using Answer = std::function<void(QMessageBox&)>;

Answer clicking(QMessageBox::StandardButton button)
{
    return [button](QMessageBox& box) { QTest::mouseClick(box.button(button), Qt::LeftButton); };
}

} // namespace
Q_DECLARE_METATYPE(Answer)

class TestClosing : public guitest::MainWindowTest
{
    Q_OBJECT

private slots:
    void withoutChangesAsksNothing_data()
    {
        QTest::addColumn<QString>("before");
        for (const char* before : {"nothing", "saved change", "cell editor with the same text"}) {
            QTest::newRow(before) << QString::fromLatin1(before);
        }
    }

    void withoutChangesAsksNothing()
    {
        QFETCH(const QString, before);
        const bool isSaved = before == QLatin1String("saved change");
        if (isSaved) {
            editCell(1, 1, "B");
            click("actionSave");
        } else if (before != QLatin1String("nothing")) {
            typeIntoCell(1, 1, "A");
        }
        QVERIFY(!closeAndAnswer(clicking(QMessageBox::Cancel)));
        QVERIFY(!window().isVisible());
        QCOMPARE(configuration().read(), isSaved ? m_saved : m_unsaved);
    }

    void questionHasTheseWordsAndButtons()
    {
        editCell(1, 1, "B");
        QVERIFY(closeAndAnswer([this](QMessageBox& box) {
            QCOMPARE(box.windowTitle(), QStringLiteral("Unsaved data"));
            QCOMPARE(box.text(), QStringLiteral("Do you want to save before exiting?"));
            QCOMPARE(box.informativeText(), QString());
            QCOMPARE(box.icon(), QMessageBox::Question);
            QCOMPARE(box.standardButtons(),
                     QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
            QCOMPARE(box.defaultButton(), nullptr);
            QCOMPARE(box.parent(), &window());
            QVERIFY(window().isVisible());
            QCOMPARE(configuration().read(), m_unsaved);
            box.button(QMessageBox::Cancel)->click();
        }));
    }

    void answerDecidesOnSavingAndClosing_data()
    {
        columns<Answer, bool, bool, bool>("answer", "inEditor", "closes", "saves");
        for (const bool inEditor : {false, true}) {
            const auto row = [inEditor](const char* name, const Answer& answer, bool closes,
                                        bool saves) {
                QTest::addRow("%s, %s", name, inEditor ? "text in a cell editor" : "edited cell")
                    << answer << inEditor << closes << saves;
            };
            row("Yes", clicking(QMessageBox::Yes), true, true);
            row("No", clicking(QMessageBox::No), true, false);
            row("Cancel", clicking(QMessageBox::Cancel), false, false);
            row(
                "Escape", [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); }, false,
                false);
            // The title bar's close button is Cancel.
            row(
                "box closed", [](QMessageBox& box) { box.close(); }, false, false);
            row(
                "no button", [](QMessageBox& box) { box.done(QMessageBox::NoButton); }, true,
                false);
        }
    }

    void answerDecidesOnSavingAndClosing()
    {
        QFETCH(const Answer, answer);
        QFETCH(const bool, inEditor);
        QFETCH(const bool, closes);
        QFETCH(const bool, saves);
        if (inEditor) {
            typeIntoCell(1, 1, " B:# ");
            QVERIFY(!model().isDirty());
        } else {
            editCell(1, 1, "B");
        }
        const auto modified = std::filesystem::last_write_time(configuration().path());
        QVERIFY(closeAndAnswer(answer));
        QCOMPARE(window().isVisible(), !closes);
        QCOMPARE(configuration().read(), saves ? m_saved : m_unsaved);
        QCOMPARE(std::filesystem::last_write_time(configuration().path()) == modified, !saves);
        QCOMPARE(model().isDirty(), !saves);
        QCOMPARE(isEnabled("actionSave"), !saves);
        QCOMPARE(text(1, 1), QStringLiteral("B"));
    }

    void titleBarAsksEachTime()
    {
        editCell(1, 1, "B");
        for (const auto answer : {QMessageBox::Cancel, QMessageBox::Cancel, QMessageBox::No}) {
            const support::ModalAnswer<QMessageBox> modal(clicking(answer));
            QCOMPARE(window().close(), answer == QMessageBox::No);
            QVERIFY(modal.wasShown());
        }
        QCOMPARE(configuration().read(), m_unsaved);
    }

    void failingSaveClosesTheWindow()
    {
        editCell(1, 1, "B");
        // A folder cannot be written as a file.
        std::filesystem::remove(configuration().path());
        std::filesystem::create_directory(configuration().path());
        const bool wasAsked = closeAndAnswer(clicking(QMessageBox::Yes));
        std::filesystem::remove(configuration().path());
        QVERIFY(wasAsked);
        QVERIFY(!window().isVisible());
        QVERIFY(!model().isDirty());
    }

    void destructionDoesNotSave()
    {
        editCell(1, 1, "B");
        destroy();
        QCOMPARE(configuration().read(), m_unsaved);
    }

private:
    void setUp() override { start(s_lines); }
    /// Closes the window. True if the question came up; it is given this answer.
    bool closeAndAnswer(const Answer& answer) const
    {
        const support::ModalAnswer<QMessageBox> modal(answer);
        click("actionClose");
        return modal.wasShown();
    }

    static constexpr const char* s_lines = "GPIB0::1::INSTR\nA=ASRL1::INSTR\n# by hand\n";
    const std::string m_unsaved = file(s_lines);
    const std::string m_saved = file(":Provider=3674\nGPIB0::1::INSTR\nB=ASRL1::INSTR\n");
};

static const guitest::Registration<TestClosing> s_registerClosing;
#include "TestClosing.moc"
