// SPDX-License-Identifier: MIT
#pragma once

#include <QProxyStyle>

class QTableView;

namespace gui {

/// The application's style with more space between the texts of adjacent columns. For a table
/// and its horizontal header: the titles then start where the texts below them start.
class TableStyle : public QProxyStyle
{
    Q_OBJECT

public:
    /// Applies a new style, owned by the table, to the table and its horizontal header.
    static void apply(QTableView& table);

    /// The distance of a cell's text from the cell's edge, in device-independent pixels.
    static int textMargin(const QWidget& table);

    int pixelMetric(PixelMetric metric, const QStyleOption* option = nullptr,
                    const QWidget* widget = nullptr) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget = nullptr) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;

private:
    int extraHeaderMargin(const QStyleOption* option, const QWidget* widget) const;
};

} // namespace gui
