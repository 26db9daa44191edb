// SPDX-License-Identifier: MIT
#include "tests/model/ModelTest.h"

#include <ostream>

void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}

Rows ModelTest::rowsOf(const ConfigurationModel& model)
{
    Rows rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        rows.emplace_back(model.data(model.index(row, 0)).toString(),
                          model.data(model.index(row, 1)).toString());
    }
    return rows;
}

void ModelTest::load(std::string_view lines)
{
    m_configuration.write(lines);
    m_selection.reset();
    m_model = std::make_unique<AnyIndexModel>(nullptr);
}

void ModelTest::select(int row, QItemSelectionModel::SelectionFlags flags)
{
    m_selection = std::make_unique<QItemSelectionModel>(m_model.get());
    m_selection->setCurrentIndex(m_model->index(row, 0),
                                 QItemSelectionModel::ClearAndSelect | flags);
    m_model->m_selectionModel = m_selection.get();
}
