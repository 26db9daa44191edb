// SPDX-License-Identifier: MIT
// The main window's actions that open a dialog and carry its result into the table.
#include "gui/MainWindow.h"

#include "ui_MainWindow.h"

#include "gui/ResourceDialog.h"

namespace gui {

void MainWindow::rsrcStringEditor()
{}

void MainWindow::rsrcStringEditorEdit()
{}

void MainWindow::findResource()
{
    ResourceDialog dialog(this);
    if (dialog.exec() != QDialog::Rejected) {
        m_model.setResource(dialog.getResource());
    }
}

void MainWindow::setProperties()
{}

} // namespace gui
