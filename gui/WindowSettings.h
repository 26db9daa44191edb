// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QTabWidget;
class QWidget;

namespace gui {

/// Keeps one window's size, position and more over restarts, in the user's settings for this
/// application. What is stored is applied as it stands, off the screen too; what is missing leaves
/// the window centred on the default screen at its present size. GUI thread only.
class WindowSettings
{
public:
    enum class Maximised
    {
        Kept,
        NotKept
    };

    /// The group that the window's settings are stored in.
    explicit WindowSettings(const QString& group, Maximised maximised = Maximised::Kept);

    /// With tabs, their current index is restored or saved as well. A window that was maximised is
    /// shown by restore().
    void restore(QWidget& window, QTabWidget* tabs = nullptr) const;
    void save(const QWidget& window, const QTabWidget* tabs = nullptr) const;

private:
    QString m_group;
    Maximised m_maximised;
};

} // namespace gui
