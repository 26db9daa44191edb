// SPDX-License-Identifier: MIT
// Every signal of the model, in order and with its arguments.

#include "tests/model/ModelTest.h"

#include <QMetaMethod>
#include <QRegularExpression>

#include <functional>

namespace {

QString rowRange(const char* what, int first, int last, int rowCount)
{
    return QStringLiteral("%1 %2..%3 of %4")
        .arg(QLatin1String(what))
        .arg(first)
        .arg(last)
        .arg(rowCount);
}

QString cell(const QModelIndex& index)
{
    return QStringLiteral("(%1,%2)").arg(index.row()).arg(index.column());
}

/// Appends a line to the log for each signal.
void record(ConfigurationModel& model, QStringList& log)
{
    using Model = ConfigurationModel;
    QObject::connect(&model, &Model::dirtyHasChanged,
                     [&log](bool isDirty) { log += QLatin1String(isDirty ? "dirty" : "clean"); });
    QObject::connect(&model, &Model::editCompleted,
                     [&log](const QString& text) { log += QStringLiteral("edit ") + text; });
    QObject::connect(
        &model, &Model::dataChanged,
        [&log](const QModelIndex& from, const QModelIndex& to, const QVector<int>& roles) {
            log +=
                QStringLiteral("data %1..%2 roles %3").arg(cell(from), cell(to)).arg(roles.size());
        });
    QObject::connect(
        &model, &Model::headerDataChanged,
        [&log](Qt::Orientation orientation, int first, int last) {
            log += QStringLiteral("header %1 %2..%3").arg(orientation).arg(first).arg(last);
        });
    const auto recordRange = [&](const char* what) {
        return [&, what](const QModelIndex& parent, int first, int last) {
            EXPECT_FALSE(parent.isValid());
            log += rowRange(what, first, last, model.rowCount());
        };
    };
    QObject::connect(&model, &Model::rowsAboutToBeRemoved, recordRange("removing"));
    QObject::connect(&model, &Model::rowsRemoved, recordRange("removed"));
    const auto other = [&log] { log += QStringLiteral("another signal"); };
    QObject::connect(&model, &Model::rowsInserted, other);
    QObject::connect(&model, &Model::modelReset, other);
    QObject::connect(&model, &Model::layoutChanged, other);
}

class ModelSignals : public ModelTest
{
protected:
    ModelSignals() { record(*m_model, m_log); }

    QStringList takeLog() { return std::exchange(m_log, {}); }

    /// What refresh() emits: one row and one column too many, deliberately.
    static QStringList refreshed(int rowCount)
    {
        return {QStringLiteral("data (0,0)..(%1,2) roles 0").arg(rowCount),
                QStringLiteral("header %1 0..%2").arg(Qt::Vertical).arg(rowCount)};
    }

    QStringList m_log;
};

TEST_F(ModelSignals, TheMetaObjectHasTheConnectedSignalsAndSlots)
{
    const QMetaObject& meta = ConfigurationModel::staticMetaObject;
    QStringList own;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        own += QLatin1String(method.methodType() == QMetaMethod::Signal ? "signal " : "slot ") +
               QLatin1String(method.methodSignature());
    }
    own.sort();
    EXPECT_EQ(own, (QStringList{text("signal dirtyHasChanged(bool)"),
                                text("signal editCompleted(QString)"), text("slot addEntry()"),
                                text("slot removeSelectedEntry()"), text("slot save()")}));
}

TEST_F(ModelSignals, RefreshNotifiesOnePastTheLastRowAndColumn)
{
    for (int count = 3; count >= 0; --count) {
        m_model->refresh();
        EXPECT_EQ(takeLog(), refreshed(count));
        m_model->removeRows(0, 1);
        takeLog();
    }
}

TEST_F(ModelSignals, AddEmitsDirtyAndARefresh)
{
    m_model->add(text("a"), text("b"));
    EXPECT_EQ(takeLog(), QStringList(text("dirty")) + refreshed(4));
    m_model->addEntry();
    EXPECT_EQ(takeLog(), refreshed(5));
}

TEST_F(ModelSignals, RemoveRowsAnnouncesOneRowTooMany)
{
    for (const auto& [row, count] :
         {std::pair(0, 1), std::pair(2, 1), std::pair(1, 2), std::pair(0, 3), std::pair(1, 0)}) {
        load("A\nB\nC\n");
        record(*m_model, m_log);
        EXPECT_TRUE(m_model->removeRows(row, count));
        EXPECT_EQ(takeLog(), QStringList({rowRange("removing", row, row + count, 3), text("dirty"),
                                          rowRange("removed", row, row + count, 3 - count)}) +
                                 refreshed(3 - count));
    }
}

TEST_F(ModelSignals, AnEditEmitsDirtyAndTheTextButNoDataChanged)
{
    const QModelIndex alias = m_model->index(0, 1);
    m_model->setData(alias, text(" my dev:1 "));
    EXPECT_EQ(takeLog(), (QStringList{text("dirty"), text("edit my_dev1")}));
    m_model->setData(alias, text("my dev1"));
    EXPECT_EQ(takeLog(), QStringList(text("edit my_dev1")));
    m_model->setData(m_model->at(3, 0), text("x y"));
    EXPECT_EQ(takeLog(), QStringList(text("edit x_y"))) << "outside the table";
    m_model->setData(alias, text("x"), Qt::DisplayRole);
    EXPECT_EQ(takeLog(), QStringList()) << "another role";
}

TEST_F(ModelSignals, SetDirtyEmitsOnlyAChange)
{
    for (const bool isDirty : {false, true, true, false, false}) {
        m_model->setDirty(isDirty);
        EXPECT_EQ(m_model->isDirty(), isDirty);
    }
    EXPECT_EQ(takeLog(), (QStringList{text("dirty"), text("clean")}));
}

TEST_F(ModelSignals, SaveAndLoadEmitCleanOnlyIfTheModelWasDirty)
{
    for (const auto& action : {&ConfigurationModel::save, &ConfigurationModel::loaddata}) {
        ((*m_model).*action)();
        EXPECT_EQ(takeLog(), QStringList());
        m_model->setDirty(true);
        ((*m_model).*action)();
        EXPECT_EQ(takeLog(), (QStringList{text("dirty"), text("clean")}));
    }
}

TEST_F(ModelSignals, EachChangeEmitsDirtyOnceAndNoChangeNothing)
{
    using Step = std::function<void()>;
    const auto edit = [this](int column, const char* typed) -> Step {
        return [=] { m_model->setData(m_model->index(2, column), text(typed)); };
    };
    const auto setResource = [this](const char* resource) -> Step {
        return [=] {
            select(2);
            m_model->setResource(text(resource));
        };
    };
    using Port = QvVisa::SSerialProperties;
    const auto setPorts = [this](const QvVisa::SerialPropertiesMap& ports) -> Step {
        return [=] { m_model->setSerialProperties(ports); };
    };
    using Board = QvVisa::SGpibProperties;
    const auto setBoards = [this](const QvVisa::GpibPropertiesMap& boards) -> Step {
        return [=] { m_model->setGpibProperties(boards); };
    };
    const Port port{19200, 8, 0, 0, 0};
    const std::vector<Step> changes{
        edit(0, "x"),
        edit(1, "x"),
        [this] { m_model->addEntry(); },
        [this] { m_model->removeRows(0, 1); },
        setResource("x"),
        setPorts({{3, {300, 8, 0, 0, 0}}}),
        setPorts({{3, {19200, 7, 0, 0, 0}}}),
        setPorts({{3, {19200, 8, 1, 0, 0}}}),
        setPorts({{3, {19200, 8, 0, 1, 0}}}),
        setPorts({{3, {19200, 8, 0, 0, 1}}}),
        setPorts({{3, port}, {9, {}}}),
        setPorts({{4, port}}),
        setPorts({}),
        setBoards({{0, {}}}),
        setBoards({{1, Board{1, 0xFFFF, 1}}}),
        [this] { m_model->setProvider(8); },
    };
    const std::vector<Step> noChanges{
        edit(0, "TCPIP0::10.0.0.5::INSTR"),
        edit(1, " :DMM; "),
        setResource("TCPIP0::10.0.0.5::INSTR"),
        setPorts({{3, port}}),
        setBoards({}),
        [this] { m_model->setProvider(7); },
        [this] { m_model->removeRows(4, 1); },
        [this] { m_model->removeSelectedEntry(); },
    };
    const auto expectSignals = [this](const Step& step, bool isDirtyBefore,
                                      const QStringList& expected) {
        load();
        m_model->setDirty(isDirtyBefore);
        record(*m_model, m_log);
        step();
        EXPECT_EQ(takeLog().filter(QRegularExpression(text("^(dirty|clean)$"))), expected);
        EXPECT_EQ(m_model->isDirty(), isDirtyBefore || !expected.isEmpty());
    };
    for (std::size_t i = 0; i < changes.size(); ++i) {
        SCOPED_TRACE(i);
        expectSignals(changes[i], false, {text("dirty")});
        expectSignals(changes[i], true, {});
    }
    for (std::size_t i = 0; i < noChanges.size(); ++i) {
        SCOPED_TRACE(i);
        expectSignals(noChanges[i], false, {});
        expectSignals(noChanges[i], true, {});
    }
}

TEST_F(ModelSignals, AChangeThatIsUndoneByHandLeavesTheModelDirty)
{
    m_model->setData(m_model->index(0, 0), text("two"));
    m_model->setData(m_model->index(0, 0), text("GPIB0::1::INSTR"));
    m_model->addEntry();
    m_model->removeRows(3, 1);
    m_model->setProvider(1);
    m_model->setProvider(7);
    EXPECT_EQ(takeLog().filter(QStringLiteral("clean")), QStringList());
    EXPECT_TRUE(m_model->isDirty());
}

} // namespace
