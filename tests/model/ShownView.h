// SPDX-License-Identifier: MIT
#pragma once

#include "model/ConfigurationModel.h"

#include <QCoreApplication>
#include <QHeaderView>
#include <QTableView>

#include <memory>

namespace support {

/// A view set up like the main window's table, of a fixed size, and without focus: when two of them
/// look different, their rows are.
inline std::unique_ptr<QTableView> shownView(ConfigurationModel& model)
{
    auto view = std::make_unique<QTableView>();
    view->setModel(&model);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    view->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    view->horizontalHeader()->setStretchLastSection(true);
    view->setColumnWidth(0, 150);
    view->setFocusPolicy(Qt::NoFocus);
    view->resize(400, 300);
    view->show();
    return view;
}

/// Has the views take in what the model told them.
inline void finishLayout()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

} // namespace support
