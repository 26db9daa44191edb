// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QFont>

namespace guitest {

/// Sets the font height of all windows, in pixels, while the object exists.
class FontSize
{
public:
    /// What desktops use.
    static constexpr int usual = 13;
    static constexpr int large = 20;

    explicit FontSize(int pixels) : m_former(QApplication::font())
    {
        QFont font = m_former;
        font.setPixelSize(pixels);
        QApplication::setFont(font);
    }
    ~FontSize() { QApplication::setFont(m_former); }
    FontSize(const FontSize&) = delete;
    FontSize& operator=(const FontSize&) = delete;

private:
    QFont m_former;
};

} // namespace guitest
