// SPDX-License-Identifier: MIT
// The main window's actions that open a dialog and carry its result into the table.
#include "gui/MainWindow.h"

#include "ui_MainWindow.h"

#include "gui/PropertyDialog.h"
#include "gui/ResourceDialog.h"
#include "gui/RsrcStringEditor.h"

namespace gui {

void MainWindow::rsrcStringEditor()
{
    RsrcStringEditor editor(this);
    if (editor.exec() != QDialog::Rejected) {
        m_model.add(editor.getRsrcString(), editor.getAlias());
        m_ui->resourceView->scrollToBottom();
    }
}

void MainWindow::rsrcStringEditorEdit()
{
    const QItemSelectionModel& selection = *m_ui->resourceView->selectionModel();
    if (!selection.hasSelection()) {
        return;
    }
    // The composer must show the text of an open cell editor.
    finishCellEdit();
    const int row = selection.currentIndex().row();
    const QModelIndex resource = m_model.index(row, ConfigurationModel::ResourceColumn);
    const QModelIndex alias = m_model.index(row, ConfigurationModel::AliasColumn);
    RsrcStringEditor editor(this);
    editor.setRsrcString(m_model.data(resource, Qt::DisplayRole).toString());
    editor.setAlias(m_model.data(alias, Qt::DisplayRole).toString());
    if (editor.exec() != QDialog::Rejected) {
        m_model.setData(resource, editor.getRsrcString(), Qt::EditRole);
        m_model.setData(alias, editor.getAlias(), Qt::EditRole);
        paintTable();
    }
}

void MainWindow::findResource()
{
    ResourceDialog dialog(this);
    if (dialog.exec() != QDialog::Rejected) {
        m_model.setResource(dialog.getResource());
        paintTable();
    }
}

/// The model emits no signal for a changed cell. Closing a dialog usually repaints the table, but
/// not with every window manager.
void MainWindow::paintTable()
{
    m_ui->resourceView->viewport()->update();
}

void MainWindow::setProperties()
{
    PropertyDialog dialog(m_model, this);
    dialog.exec();
}

} // namespace gui
