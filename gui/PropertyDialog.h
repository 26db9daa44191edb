// SPDX-License-Identifier: MIT
#pragma once

#include "config/ConfigurationRecords.h"

#include <QDialog>
#include <QPoint>

#include <memory>

class ConfigurationModel;
class QComboBox;
class QTreeWidgetItem;
class Ui_PropertyDialog;

namespace gui {

/// The modal dialog for the serial ports' default settings, the GPIB boards and the provider ID.
/// It works on copies: OK hands them to the model, anything else throws them away. The tabs for
/// the GPIB boards and for a conflict manager are built but not shown. GUI thread only.
class PropertyDialog : public QDialog
{
    Q_OBJECT

public:
    /// Asks the VISA library for the serial ports and blocks for as long as that takes. The model
    /// must outlive the dialog. A dialog that was last closed maximised is on the screen, modal,
    /// when the constructor returns.
    PropertyDialog(ConfigurationModel& model, QWidget* parent);
    ~PropertyDialog() override;

    /// The provider ID as typed, its low 16 bits where more was typed; the default ID where
    /// nothing was.
    unsigned short getProvider() const;

public slots:
    /// Shows the GPIB boards of the working copy anew.
    void redrawtree();
    /// Takes an edited row of the tree into the working copy, or shows the row anew where a text
    /// is not a number.
    void itemChanged(QTreeWidgetItem* item, int column);
    /// Adds the board behind the last one, with default properties.
    void addDevice();
    /// Removes the board of the first selected row.
    void removeDevice();
    /// Pops up the tree's menu; pos is a point of the tree's viewport. Does not wait for it.
    void treePopupMenu(QPoint pos);
    /// Does nothing: the VISA implementations it served are not shown.
    void setVisaComboboxIndex(int index);
    /// Does nothing, like setVisaComboboxIndex().
    void VisaCheckBoxStateChanged(bool enabled);
    /// Hands provider, boards and ports to the model and closes the dialog.
    void accept() override;
    /// Takes what is shown of the present port into the working copy and shows the port at this
    /// index of the list; -1 shows none.
    void serialInterfaceChanged(int iIndex);
    /// Does nothing: the operating system's own settings are not shown.
    void setDefaultOs();
    /// Shows default settings for the present port.
    void setDefaultQv();

private:
    void setupUi();
    void setupConnections();
    void setupSerialInterface();
    static void addBaudrates(QComboBox& combo);
    static void addDataBits(QComboBox& combo);
    void UpdateVisaSerialSettings(QvVisa::SSerialProperties const& properties);
    void GetDisplayVisaSerialSettings(QvVisa::SSerialProperties& properties) const;
    unsigned short serialInterfaceNumber(int index) const;
    void restoreWindowSettings();
    void saveWindowSettings() const;

    std::unique_ptr<Ui_PropertyDialog> m_ui;
    ConfigurationModel& m_model;
    QvVisa::GpibPropertiesMap m_gpibProperties;
    QvVisa::SerialPropertiesMap m_serialProperties;
    /// Index in comboBoxSerialInterface of the port on display, -1 for none.
    int m_currentSerialIndex = -1;
};

} // namespace gui
