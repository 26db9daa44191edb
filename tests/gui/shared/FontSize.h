// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QFont>

namespace guitest {

/// All windows have letters of that height, in pixels, for as long as the object lives.
class FontSize
{
public:
    explicit FontSize(int pixels) : m_common(QApplication::font())
    {
        QFont font = m_common;
        font.setPixelSize(pixels);
        QApplication::setFont(font);
    }
    ~FontSize() { QApplication::setFont(m_common); }
    FontSize(const FontSize&) = delete;
    FontSize& operator=(const FontSize&) = delete;

private:
    QFont m_common;
};

} // namespace guitest
