// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include <memory>

class QLineEdit;
class Ui_RsrcStringEditor;

namespace gui {

/// The modal "VISA Resource String Composer": one resource string and its alias, typed, picked
/// from the found resources, or composed from fields. A change of a field replaces the resource
/// string; a resource string is never parsed into the fields. The results are valid only after
/// the dialog was accepted. GUI thread only.
class RsrcStringEditor : public QDialog
{
    Q_OBJECT

public:
    /// Starts with a VXI-11 resource without host, at the window's last size and position.
    explicit RsrcStringEditor(QWidget* parent);
    ~RsrcStringEditor() override;

    /// Sets the text unchanged; leaves the fields alone.
    void setRsrcString(const QString& resource);
    /// Trimmed, not checked; may be empty.
    QString getRsrcString() const;

    /// Sets the text unchanged, including characters that the field does not let the user type.
    void setAlias(const QString& alias);
    /// Trimmed; may be empty.
    QString getAlias() const;

private slots:
    /// Shows the fields of the interface at this index of the list and composes the string.
    void currentIndexChanged(int index);
    /// Composes the string from all fields; the argument is ignored.
    void updateRsrcString(const QString& text);
    void findResource();

private:
    void setupUi();
    void setupConnections();
    void setValidator(QLineEdit& edit, const QString& pattern);
    void restoreWindowSettings();
    void saveWindowSettings() const;

    std::unique_ptr<Ui_RsrcStringEditor> m_ui;
};

} // namespace gui
