// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include <memory>

class QLineEdit;
class Ui_RsrcStringEditor;

namespace gui {

/// The modal "VISA Resource String Composer": one resource string and its alias, typed, picked
/// from the found resources, or built from fields. Building goes one way: a change of a field
/// rewrites the resource string, a resource string is never split into the fields. The results
/// count only when the dialog was accepted. GUI thread only.
class RsrcStringEditor : public QDialog
{
    Q_OBJECT

public:
    /// Starts with an empty VXI-11 resource, at the window's last size and position.
    explicit RsrcStringEditor(QWidget* parent);
    ~RsrcStringEditor() override;

    /// The text is taken as it is; the fields keep theirs.
    void setRsrcString(const QString& resource);
    /// Trimmed, not checked; may be empty.
    QString getRsrcString() const;

    /// The text is taken as it is, with characters too that could not be typed.
    void setAlias(const QString& alias);
    /// Trimmed; may be empty.
    QString getAlias() const;

private slots:
    /// Shows the fields of the interface at this position of the list and composes anew.
    void currentIndexChanged(int index);
    /// Composes anew from all fields, whichever the text came from.
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
