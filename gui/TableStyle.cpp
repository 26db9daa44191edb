// SPDX-License-Identifier: MIT
#include "gui/TableStyle.h"

#include <QHeaderView>
#include <QStyleOption>
#include <QTableView>

namespace gui {

namespace {

/// Added to both sides of each cell's text, in device-independent pixels.
constexpr int s_extraMargin = 4;

} // namespace

void TableStyle::apply(QTableView& table)
{
    auto* style = new TableStyle;
    style->setParent(&table);
    table.setStyle(style);
    table.horizontalHeader()->setStyle(style);
}

int TableStyle::textMargin(const QWidget& table)
{
    // Styles add one pixel to the focus frame's margin.
    return table.style()->pixelMetric(PM_FocusFrameHMargin, nullptr, &table) + 1;
}

int TableStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                            const QWidget* widget) const
{
    const int value = QProxyStyle::pixelMetric(metric, option, widget);
    return metric == PM_FocusFrameHMargin ? value + s_extraMargin : value;
}

void TableStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const
{
    const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(option);
    if (element != CE_HeaderLabel || header == nullptr) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    QStyleOptionHeader label = *header;
    const int margin = extraHeaderMargin(option, widget);
    label.rect.adjust(margin, 0, -margin, 0);
    QProxyStyle::drawControl(element, &label, painter, widget);
}

QSize TableStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                   const QWidget* widget) const
{
    const QSize result = QProxyStyle::sizeFromContents(type, option, size, widget);
    const int margin = type == CT_HeaderSection ? extraHeaderMargin(option, widget) : 0;
    return result + QSize(2 * margin, 0);
}

/// By how much the margin of a cell's text is wider than that of a title.
int TableStyle::extraHeaderMargin(const QStyleOption* option, const QWidget* widget) const
{
    // As in textMargin().
    return pixelMetric(PM_FocusFrameHMargin, option, widget) + 1 -
           pixelMetric(PM_HeaderMargin, option, widget);
}

} // namespace gui
