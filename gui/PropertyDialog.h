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
/// It works on copies: OK passes them to the model, anything else discards them. The tabs for
/// the GPIB boards and for a conflict manager are built but not shown. GUI thread only.
class PropertyDialog : public QDialog
{
    Q_OBJECT

public:
    /// Searches the VISA library for serial ports and blocks for as long as that takes. The model
    /// must outlive the dialog. If the dialog was last closed maximised, the constructor shows it.
    PropertyDialog(ConfigurationModel& model, QWidget* parent);
    ~PropertyDialog() override;

    /// The low 16 bits of the provider ID that was typed; the default ID if the field is empty.
    unsigned short getProvider() const;

public slots:
    /// Fills the tree from the working copy of the GPIB boards again.
    void redrawtree();
    /// Copies an edited row of the tree into the working copy; fills the tree again if a text is
    /// not a number.
    void itemChanged(QTreeWidgetItem* item, int column);
    /// Adds a board with default properties, numbered after the last one.
    void addDevice();
    /// Removes the board of the first selected row.
    void removeDevice();
    /// Shows the tree's context menu without blocking; pos is in the tree's viewport.
    void treePopupMenu(QPoint pos);
    /// Does nothing: the list of VISA implementations is not shown.
    void setVisaComboboxIndex(int index);
    /// Does nothing, like setVisaComboboxIndex().
    void VisaCheckBoxStateChanged(bool enabled);
    /// Passes provider, boards and ports to the model and closes the dialog.
    void accept() override;
    /// Copies the settings on display into the working copy and shows the port at this index of
    /// the list; -1 for none.
    void serialInterfaceChanged(int iIndex);
    /// Does nothing: the operating system's settings are not shown.
    void setDefaultOs();
    /// Shows default settings for the current port.
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
