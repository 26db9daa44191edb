// SPDX-License-Identifier: MIT
#pragma once

#include "gui/MainWindow.h"
#include "tests/gui/common/Dialogs.h"
#include "tests/gui/common/WindowTest.h"
#include "tests/support/Children.h"
#include "tests/support/ModalWindows.h"

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QTableView>
#include <QToolBar>

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace guitest {

/// Base of the main window's tests: a window on the screen, used by keys and clicks.
class MainWindowTest : public WindowTest
{
protected:
    using WindowTest::WindowTest;

    void tearDown() override { m_window.reset(); }

    /// Opens a window on a configuration file and a bench with these lines.
    void start(std::string_view lines, std::string_view benchLines = "")
    {
        m_window.reset();
        configuration().write(lines);
        bench().write(benchLines);
        show();
    }

    /// Opens a new window on the file as it is, after destroying the one before.
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
    QAction& action(const char* name) const { return support::child<QAction>(window(), name); }
    bool isEnabled(const char* name) const { return action(name).isEnabled(); }
    QTableView& table() const { return support::child<QTableView>(window(), "resourceView"); }
    ConfigurationModel& model() const
    {
        return dynamic_cast<ConfigurationModel&>(*table().model());
    }

    QString text(int row, int column) const { return model().index(row, column).data().toString(); }
    /// All rows: "resource>alias | resource>alias".
    QString rows() const
    {
        QStringList texts;
        for (int row = 0; row < model().rowCount(); ++row) {
            texts.append(text(row, 0) + QLatin1Char('>') + text(row, 1));
        }
        return texts.join(QLatin1String(" | "));
    }

    /// Clicks the action's button in the tool bar.
    void click(const char* name) const
    {
        const auto& bar = support::child<QToolBar>(window(), "toolBar");
        QWidget* button = bar.widgetForAction(&action(name));
        QVERIFY2(button != nullptr && button->isVisible(), name);
        QTest::mouseClick(button, Qt::LeftButton);
    }

    /// Clicks the action's button and calls answer with the dialog that opens.
    template <typename Dialog>
    void clickAndAnswer(const char* name, const std::function<void(Dialog&)>& answer) const
    {
        const support::ModalAnswer<Dialog> modal(answer);
        click(name);
        QVERIFY(modal.wasShown());
    }

    QPoint cellCentre(int row, int column) const
    {
        return table().visualRect(model().index(row, column)).center();
    }
    QPoint belowTheRows() const
    {
        const QRect area = table().viewport()->rect();
        return {area.center().x(), area.bottom() - 5};
    }

    void clickCell(int row, int column, Qt::KeyboardModifier modifier = Qt::NoModifier) const
    {
        QTest::mouseClick(table().viewport(), Qt::LeftButton, modifier, cellCentre(row, column));
    }

    /// Opens the cell's editor and types the text over the one in it; the editor stays open.
    void typeIntoCell(int row, int column, const char* text) const
    {
        clickCell(row, column);
        QTest::mouseDClick(table().viewport(), Qt::LeftButton, Qt::NoModifier,
                           cellCentre(row, column));
        QVERIFY(cellEditor() != nullptr);
        QTest::keyClicks(cellEditor(), QString::fromUtf8(text));
    }

    /// The same, then Return; waits until the editor is gone.
    void editCell(int row, int column, const char* text) const
    {
        typeIntoCell(row, column, text);
        endCellEdit(Qt::Key_Return);
    }
    void endCellEdit(Qt::Key key) const
    {
        QTest::keyClick(cellEditor(), key);
        QTRY_VERIFY(cellEditor() == nullptr);
    }

    /// Null when no cell is edited. A closed editor stays for a while, hidden.
    QLineEdit* cellEditor() const
    {
        for (QLineEdit* editor : table().viewport()->findChildren<QLineEdit*>()) {
            if (editor->isVisible()) {
                return editor;
            }
        }
        return nullptr;
    }

    /// Asks for the context menu as a right click at this point does; null if none opens.
    QPointer<QMenu> openMenu(const QPoint& point) const
    {
        QWidget& viewport = *table().viewport();
        QContextMenuEvent event(QContextMenuEvent::Mouse, point, viewport.mapToGlobal(point));
        QCoreApplication::sendEvent(&viewport, &event);
        return qobject_cast<QMenu*>(QApplication::activePopupWidget());
    }

    /// The configuration file with these lines after the version header.
    static std::string file(std::string_view lines)
    {
        return support::ConfigurationFixture::header().append(lines);
    }

private:
    std::unique_ptr<gui::MainWindow> m_window;
};

} // namespace guitest
