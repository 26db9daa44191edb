// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QTabWidget;
class QWidget;

namespace gui {

/// Saves and restores a window's size, position and more in the user's settings for this
/// application. Stored values are applied unchanged, even off the screen; without them the window
/// is centred on the default screen at its present size. GUI thread only.
class WindowSettings
{
public:
    enum class Maximised
    {
        Kept,
        NotKept
    };

    /// group: the settings group of the window.
    explicit WindowSettings(const QString& group, Maximised maximised = Maximised::Kept);

    /// With tabs, their current index is restored or saved as well. restore() shows a window that
    /// was maximised.
    void restore(QWidget& window, QTabWidget* tabs = nullptr) const;
    void save(const QWidget& window, const QTabWidget* tabs = nullptr) const;

private:
    QString m_group;
    Maximised m_maximised;
};

} // namespace gui
