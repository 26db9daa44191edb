// SPDX-License-Identifier: MIT
#include "gui/WindowSettings.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QStyle>
#include <QTabWidget>
#include <QWidget>
#include <QWindow>

namespace gui {

namespace {

QString sizeKey()
{
    return QStringLiteral("size");
}

QString positionKey()
{
    return QStringLiteral("pos");
}

/// Despite its name: whether the window was maximised.
QString maximisedKey()
{
    return QStringLiteral("fullscreen");
}

QString tabKey()
{
    return QStringLiteral("tabindex");
}

void centre(QWidget& window)
{
    window.setGeometry(QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, window.size(),
                                           QGuiApplication::primaryScreen()->availableGeometry()));
}

} // namespace

WindowSettings::WindowSettings(const QString& group, Maximised maximised)
    : m_group(group),
      m_maximised(maximised)
{}

void WindowSettings::restore(QWidget& window, QTabWidget* tabs) const
{
    QSettings settings;
    settings.beginGroup(m_group);
    const bool showMaximised = m_maximised == Maximised::Kept &&
                               settings.value(maximisedKey(), window.isMaximized()).toBool();
    centre(window);
    window.resize(settings.value(sizeKey(), window.size()).toSize());
    const QPoint position = settings.value(positionKey(), window.pos()).toPoint();
    window.move(position);
    if (QWindow* handle = window.windowHandle(); handle != nullptr && !handle->isVisible()) {
        // Before the first show, Qt treats pos() as the client position; set the frame position, or
        // the window drifts by its title bar.
        handle->setFramePosition(position);
    }
    if (tabs != nullptr) {
        tabs->setCurrentIndex(settings.value(tabKey(), 0).toInt());
    }
    settings.endGroup();
    if (showMaximised) {
        window.showMaximized();
    }
}

void WindowSettings::save(const QWidget& window, const QTabWidget* tabs) const
{
    QSettings settings;
    settings.beginGroup(m_group);
    settings.setValue(sizeKey(), window.size());
    settings.setValue(positionKey(), window.pos());
    if (m_maximised == Maximised::Kept) {
        settings.setValue(maximisedKey(), window.isMaximized());
    }
    if (tabs != nullptr) {
        settings.setValue(tabKey(), tabs->currentIndex());
    }
    settings.endGroup();
}

} // namespace gui
