// SPDX-License-Identifier: MIT
#pragma once

#include "gui/MainWindow.h"
#include "tests/support/BenchFixture.h"
#include "tests/support/Children.h"
#include "tests/support/ConfigurationFixture.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QSettings>
#include <QTableView>
#include <QTest>
#include <QToolBar>

#include <memory>
#include <string_view>

namespace guitest {

/// What one case of the main window's tests stands on: a configuration file, no stored settings,
/// a bench and, from show() on, a window on the screen, worked by keys and clicks.
class MainWindowCase
{
public:
    explicit MainWindowCase(support::ConfigurationFixture& configuration,
                            std::string_view lines = "", std::string_view bench = "")
        : m_configuration(configuration),
          m_bench(bench)
    {
        QSettings().clear();
        configuration.write(lines);
    }

    /// A new window; one before it is destroyed first.
    void show()
    {
        m_window.reset();
        m_window = std::make_unique<gui::MainWindow>(nullptr);
        m_window->show();
        QApplication::setActiveWindow(m_window.get());
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }
    void destroy() { m_window.reset(); }

    gui::MainWindow& window() const { return *m_window; }
    support::BenchFixture& bench() { return m_bench; }
    support::ConfigurationFixture& configuration() { return m_configuration; }

    QAction& action(const char* name) const { return support::child<QAction>(window(), name); }
    QTableView& table() const { return support::child<QTableView>(window(), "resourceView"); }
    ConfigurationModel& model() const
    {
        return dynamic_cast<ConfigurationModel&>(*table().model());
    }
    QString text(int row, int column) const { return model().index(row, column).data().toString(); }

    /// Clicks the action's button in the tool bar.
    void click(const char* name) const
    {
        auto& bar = support::child<QToolBar>(window(), "toolBar");
        QWidget* button = bar.widgetForAction(&action(name));
        QVERIFY2(button != nullptr && button->isVisible(), name);
        QTest::mouseClick(button, Qt::LeftButton);
    }

    QPoint cellCentre(int row, int column) const
    {
        return table().visualRect(model().index(row, column)).center();
    }

    void clickCell(int row, int column) const
    {
        QTest::mouseClick(table().viewport(), Qt::LeftButton, Qt::NoModifier,
                          cellCentre(row, column));
    }

    /// Opens the cell's editor and types the text in place of what is there, without an end.
    void typeIntoCell(int row, int column, const char* text) const
    {
        clickCell(row, column);
        QTest::mouseDClick(table().viewport(), Qt::LeftButton, Qt::NoModifier,
                           cellCentre(row, column));
        QVERIFY(cellEditor() != nullptr);
        QTest::keyClicks(cellEditor(), QString::fromUtf8(text));
    }

    /// The same, ended by Return; waits until the cell's editor is gone.
    void editCell(int row, int column, const char* text) const
    {
        typeIntoCell(row, column, text);
        QTest::keyClick(cellEditor(), Qt::Key_Return);
        QTRY_VERIFY(cellEditor() == nullptr);
    }

    /// Null when no cell is being edited. An editor that is done with may live on for a while,
    /// hidden.
    QLineEdit* cellEditor() const
    {
        for (QLineEdit* editor : table().viewport()->findChildren<QLineEdit*>()) {
            if (editor->isVisible()) {
                return editor;
            }
        }
        return nullptr;
    }

private:
    support::ConfigurationFixture& m_configuration;
    support::BenchFixture m_bench;
    std::unique_ptr<gui::MainWindow> m_window;
};

} // namespace guitest
