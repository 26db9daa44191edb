// SPDX-License-Identifier: MIT
#pragma once

#include "config/ConfigurationFile.h"
#include "model/ConfigurationModel.h"
#include "tests/support/ConfigurationFixture.h"
#include "tests/support/QtWarnings.h"

#include <gtest/gtest.h>

#include <QItemSelectionModel>
#include <QString>

#include <memory>
#include <utility>
#include <vector>

/// (resource string, alias), one for each row.
using Rows = std::vector<std::pair<QString, QString>>;

void PrintTo(const QString& text, std::ostream* out);

/// Returns indexes outside the table, as a view may hold them for rows that are gone.
class AnyIndexModel : public ConfigurationModel
{
public:
    using ConfigurationModel::ConfigurationModel;
    QModelIndex at(int row, int column) const { return createIndex(row, column); }
};

/// A model with these rows: GPIB0::1::INSTR, GPIB0::2::INSTR, TCPIP0::10.0.0.5::INSTR as DMM; port
/// 3 at 19200 baud, provider 7. A warning of Qt, as for a signal that does not exist, fails the
/// case. There is one store in a process: run cases through ctest, which gives each its own.
class ModelTest : public testing::Test
{
protected:
    ModelTest() { load(); }

    void TearDown() override { EXPECT_EQ(m_warnings.all(), QStringList()); }

    static QString text(const char* latin1) { return QString::fromLatin1(latin1); }
    static Rows rowsOf(const ConfigurationModel& model);
    Rows rows() const { return rowsOf(*m_model); }

    /// Replaces the file, and the model by one that loads it.
    void load(std::string_view lines = s_lines);

    /// Selects the row's first cell, or all its cells, as the view of m_model would.
    void select(int row, QItemSelectionModel::SelectionFlags flags = QItemSelectionModel::Rows);

    static constexpr std::string_view s_lines = "GPIB0::1::INSTR\n"
                                                "GPIB0::2::INSTR\n"
                                                "DMM=TCPIP0::10.0.0.5::INSTR\n"
                                                ":Provider=7\n"
                                                ":SerialProperty[DeviceNo=3].Baudrate=19200\n";
    support::ConfigurationFixture m_configuration;
    support::QtWarnings m_warnings;
    std::unique_ptr<AnyIndexModel> m_model;
    std::unique_ptr<QItemSelectionModel> m_selection;
};
