// SPDX-License-Identifier: MIT
// The question about unsaved data, and what each answer does to the file.
#include "gui/ResourceDialog.h"
#include "tests/gui/main_window/MainWindowCase.h"
#include "tests/gui/shared/WindowTest.h"
#include "tests/support/Files.h"
#include "tests/support/ModalWindows.h"

#include <QAbstractButton>
#include <QMessageBox>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

using support::ConfigurationFixture;

class TestClosing : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void asksNothingWithoutChanges();
    void asksNothingOnceSaved();
    void asksInTheseWords();
    void answers_data();
    void answers();
    void cancelLeavesTheDataToBeSaved();
    void asksAgainEachTime();
    void anOpenEditorsTextCounts_data();
    void anOpenEditorsTextCounts();
    void anOpenEditorWithoutChangeAsksNothing();
    void aFailingSaveClosesAllTheSame();
    void destructionSavesNothing();

private:
    void setUp() override;
    void tearDown() override;
    void start();
    /// Closes the window; whether the question came up, to be answered so.
    bool closeAndAnswer(const std::function<void(QMessageBox&)>& answer);
    bool closeAndClick(QMessageBox::StandardButton button);
    std::string before() const { return ConfigurationFixture::header() + s_lines; }
    std::string after() const
    {
        return ConfigurationFixture::header() + ":Provider=3674\nGPIB0::1::INSTR\nB=ASRL1::INSTR\n";
    }

    static constexpr const char* s_lines = "GPIB0::1::INSTR\nA=ASRL1::INSTR\n# by hand\n";
    std::optional<guitest::MainWindowCase> m_case;
};

void TestClosing::setUp()
{
    start();
}

void TestClosing::tearDown()
{
    m_case.reset();
}

void TestClosing::start()
{
    m_case.emplace(configuration(), s_lines);
    m_case->show();
}

bool TestClosing::closeAndAnswer(const std::function<void(QMessageBox&)>& answer)
{
    const support::ModalAnswer<QMessageBox> modal(answer);
    m_case->click("actionClose");
    return modal.wasShown();
}

bool TestClosing::closeAndClick(QMessageBox::StandardButton button)
{
    return closeAndAnswer(
        [button](QMessageBox& box) { QTest::mouseClick(box.button(button), Qt::LeftButton); });
}

void TestClosing::asksNothingWithoutChanges()
{
    QVERIFY(!closeAndClick(QMessageBox::Cancel));
    QVERIFY(!m_case->window().isVisible());
    QCOMPARE(configuration().read(), before());
}

void TestClosing::asksNothingOnceSaved()
{
    m_case->editCell(1, 1, "B");
    m_case->click("actionSave");
    QCOMPARE(configuration().read(), after());
    QVERIFY(!closeAndClick(QMessageBox::Cancel));
    QVERIFY(!m_case->window().isVisible());
}

void TestClosing::asksInTheseWords()
{
    m_case->editCell(1, 1, "B");
    QVERIFY(closeAndAnswer([this](QMessageBox& box) {
        QCOMPARE(box.windowTitle(), QStringLiteral("Unsaved data"));
        QCOMPARE(box.text(), QStringLiteral("Do you want to save before exiting?"));
        QCOMPARE(box.informativeText(), QString());
        QCOMPARE(box.icon(), QMessageBox::Question);
        QCOMPARE(box.standardButtons(), QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        QCOMPARE(box.defaultButton(), nullptr);
        QCOMPARE(box.parent(), &m_case->window());
        // The window is still there behind the question.
        QVERIFY(m_case->window().isVisible());
        QCOMPARE(configuration().read(), before());
        box.button(QMessageBox::Cancel)->click();
    }));
}

namespace {

using Answer = std::function<void(QMessageBox&)>;

Answer clicking(QMessageBox::StandardButton button)
{
    return [button](QMessageBox& box) { QTest::mouseClick(box.button(button), Qt::LeftButton); };
}

} // namespace
Q_DECLARE_METATYPE(Answer)

void TestClosing::answers_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<bool>("closes");
    QTest::addColumn<bool>("saves");
    QTest::newRow("Yes") << clicking(QMessageBox::Yes) << true << true;
    QTest::newRow("No") << clicking(QMessageBox::No) << true << false;
    QTest::newRow("Cancel") << clicking(QMessageBox::Cancel) << false << false;
    QTest::newRow("Escape") << Answer([](QMessageBox& box) {
        QTest::keyClick(&box, Qt::Key_Escape);
    }) << false << false;
    // The title bar's close button stands for Cancel.
    QTest::newRow("box closed") << Answer([](QMessageBox& box) { box.close(); }) << false << false;
    // Without any button the box is gone by other means.
    QTest::newRow("no button") << Answer([](QMessageBox& box) { box.done(QMessageBox::NoButton); })
                               << true << false;
}

void TestClosing::answers()
{
    QFETCH(Answer, answer);
    QFETCH(bool, closes);
    QFETCH(bool, saves);
    m_case->editCell(1, 1, "B");
    const auto writtenBefore = std::filesystem::last_write_time(configuration().path());
    QVERIFY(closeAndAnswer(answer));
    QCOMPARE(m_case->window().isVisible(), !closes);
    QCOMPARE(configuration().read(), saves ? after() : before());
    QCOMPARE(std::filesystem::last_write_time(configuration().path()) == writtenBefore, !saves);
    QCOMPARE(m_case->model().isDirty(), !saves);
    QCOMPARE(m_case->action("actionSave").isEnabled(), !saves);
    QCOMPARE(m_case->text(1, 1), QStringLiteral("B"));
}

void TestClosing::cancelLeavesTheDataToBeSaved()
{
    m_case->editCell(1, 1, "B");
    QVERIFY(closeAndClick(QMessageBox::Cancel));
    m_case->click("actionSave");
    QCOMPARE(configuration().read(), after());
    QVERIFY(!closeAndClick(QMessageBox::Cancel));
    QVERIFY(!m_case->window().isVisible());
}

void TestClosing::asksAgainEachTime()
{
    m_case->editCell(1, 1, "B");
    QVERIFY(closeAndClick(QMessageBox::Cancel));
    QVERIFY(closeAndClick(QMessageBox::Cancel));
    // The title bar asks as the tool bar does.
    const support::ModalAnswer<QMessageBox> cancel(clicking(QMessageBox::Cancel));
    QVERIFY(!m_case->window().close());
    QVERIFY(cancel.wasShown());
    QVERIFY(m_case->window().isVisible());
    const support::ModalAnswer<QMessageBox> no(clicking(QMessageBox::No));
    QVERIFY(m_case->window().close());
    QVERIFY(no.wasShown());
    QCOMPARE(configuration().read(), before());
}

void TestClosing::anOpenEditorsTextCounts_data()
{
    answers_data();
}

void TestClosing::anOpenEditorsTextCounts()
{
    QFETCH(Answer, answer);
    QFETCH(bool, closes);
    QFETCH(bool, saves);
    m_case->typeIntoCell(1, 1, " B:# ");
    QVERIFY(!m_case->model().isDirty());
    QVERIFY(closeAndAnswer(answer));
    QCOMPARE(m_case->window().isVisible(), !closes);
    QCOMPARE(configuration().read(), saves ? after() : before());
    QCOMPARE(m_case->text(1, 1), QStringLiteral("B"));
    QCOMPARE(m_case->model().isDirty(), !saves);
}

void TestClosing::anOpenEditorWithoutChangeAsksNothing()
{
    m_case->typeIntoCell(1, 1, "A");
    QVERIFY(!closeAndClick(QMessageBox::Cancel));
    QVERIFY(!m_case->window().isVisible());
    QCOMPARE(configuration().read(), before());
}

void TestClosing::aFailingSaveClosesAllTheSame()
{
    m_case->editCell(1, 1, "B");
    // A folder in the file's place cannot be written.
    std::filesystem::remove(configuration().path());
    std::filesystem::create_directory(configuration().path());
    const bool wasAsked = closeAndClick(QMessageBox::Yes);
    std::filesystem::remove(configuration().path());
    QVERIFY(wasAsked);
    QVERIFY(!m_case->window().isVisible());
    QVERIFY(!m_case->model().isDirty());
}

void TestClosing::destructionSavesNothing()
{
    m_case->editCell(1, 1, "B");
    m_case->destroy();
    QCOMPARE(configuration().read(), before());
}

static const guitest::Registration<TestClosing> s_registration;
#include "TestClosing.moc"
