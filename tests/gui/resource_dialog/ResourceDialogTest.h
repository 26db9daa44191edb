// SPDX-License-Identifier: MIT
#pragma once

#include "gui/ResourceDialog.h"
#include "tests/gui/common/Dialogs.h"
#include "tests/gui/common/WindowTest.h"
#include "tests/support/Children.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QListWidget>
#include <QToolButton>

#include <memory>
#include <string_view>

namespace guitest {

/// Base of the find dialog's tests: a cache filled from a bench, and a dialog.
class ResourceDialogTest : public WindowTest
{
protected:
    using WindowTest::WindowTest;

    void tearDown() override { m_dialog.reset(); }

    /// Searches a bench with these lines, and forgets the calls.
    void scan(std::string_view benchLines)
    {
        bench().write(benchLines);
        gui::ResourceDialog::updateResourceList();
        bench().clearCalls();
    }

    /// A new dialog, not shown, in place of the one before.
    void construct()
    {
        m_dialog.reset();
        m_dialog = std::make_unique<gui::ResourceDialog>(nullptr);
    }
    void show()
    {
        m_dialog->show();
        QApplication::setActiveWindow(m_dialog.get());
    }
    void open()
    {
        construct();
        show();
    }

    gui::ResourceDialog& dialog() const { return *m_dialog; }
    QListWidget& list() const { return support::child<QListWidget>(*m_dialog, "rsrcList"); }
    QToolButton& refresh() const { return support::child<QToolButton>(*m_dialog, "refreshButton"); }
    QDialogButtonBox& box() const
    {
        return support::child<QDialogButtonBox>(*m_dialog, "buttonBox");
    }
    QString listed() const { return guitest::listed(list()); }
    /// What a dialog made now lists: the cache.
    static QString cached()
    {
        const gui::ResourceDialog dialog(nullptr);
        return guitest::listed(support::child<QListWidget>(dialog, "rsrcList"));
    }

    void clickRefresh() const { QTest::mouseClick(&refresh(), Qt::LeftButton); }
    void clickRow(int row, Qt::KeyboardModifier modifier = Qt::NoModifier) const
    {
        QTest::mouseClick(list().viewport(), Qt::LeftButton, modifier, centreOf(row));
    }
    QPoint centreOf(int row) const { return list().visualItemRect(list().item(row)).center(); }

private:
    std::unique_ptr<gui::ResourceDialog> m_dialog;
};

} // namespace guitest
