// SPDX-License-Identifier: MIT
#include "model/ConfigurationModel.h"
#include "tests/model/ModelFixture.h"
#include "tests/support/ConfigurationFixture.h"
#include "tests/support/QtWarnings.h"

#include <QItemSelectionModel>
#include <QRegularExpression>
#include <QTest>

#include <functional>
#include <memory>
#include <optional>

/// What the model tells and in which order, each with its exact arguments.
class TestConfigurationModelSignals : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void hasTheSignalsAndSlotsThatConnectionsName();
    void refreshReachesOnePastTheEnd_data();
    void refreshReachesOnePastTheEnd();
    void addTellsOfARefresh();
    void removalNamesOneRowTooMany_data();
    void removalNamesOneRowTooMany();
    void removalIsAnnouncedBeforeAndToldAfter();
    void editsTellTheTextAlone();
    void aNewResourceTellsOfDirtinessAlone();
    void dirtinessIsToldOnlyWhenItChanges();
    void everyChangeMakesDirtyOnce_data();
    void everyChangeMakesDirtyOnce();
    void noChangeTellsNothing_data();
    void noChangeTellsNothing();
    void savingTellsOnlyWhenItCleans();
    void loadingTellsOnlyWhenItCleans();

private:
    /// Writes every signal of the model into m_told, as it comes.
    void listen(ConfigurationModel& model);
    QStringList takeTold() { return std::exchange(m_told, {}); }

    support::ConfigurationFixture m_configuration;
    std::optional<support::QtWarnings> m_warnings;
    std::unique_ptr<ConfigurationModel> m_model;
    QStringList m_told;
};

namespace {

QString cell(const QModelIndex& index)
{
    return QStringLiteral("(%1,%2)").arg(index.row()).arg(index.column());
}

QString rows(const char* what, const QModelIndex& parent, int first, int last)
{
    return QStringLiteral("%1 %2..%3%4")
        .arg(QLatin1String(what))
        .arg(first)
        .arg(last)
        .arg(QLatin1String(parent.isValid() ? " under a parent" : ""));
}

QStringList refreshed(int rowCount)
{
    return {QStringLiteral("data (0,0)..(%1,2) roles 0").arg(rowCount),
            QStringLiteral("header vertical 0..%1").arg(rowCount)};
}

} // namespace

void TestConfigurationModelSignals::listen(ConfigurationModel& model)
{
    using Model = ConfigurationModel;
    const auto tell = [this](const QString& what) { m_told.append(what); };
    connect(&model, &Model::dirtyHasChanged, this, [tell](bool dirty) {
        tell(dirty ? QStringLiteral("dirty") : QStringLiteral("clean"));
    });
    connect(&model, &Model::editCompleted, this,
            [tell](const QString& text) { tell(QStringLiteral("edit ") + text); });
    connect(
        &model, &Model::dataChanged, this,
        [tell](const QModelIndex& from, const QModelIndex& to, const QVector<int>& roles) {
            tell(
                QStringLiteral("data %1..%2 roles %3").arg(cell(from), cell(to)).arg(roles.size()));
        });
    connect(&model, &Model::headerDataChanged, this,
            [tell](Qt::Orientation orientation, int first, int last) {
                tell(
                    QStringLiteral("header %1 %2..%3")
                        .arg(QLatin1String(orientation == Qt::Vertical ? "vertical" : "horizontal"))
                        .arg(first)
                        .arg(last));
            });
    connect(&model, &Model::rowsAboutToBeRemoved, this,
            [tell](const QModelIndex& parent, int first, int last) {
                tell(rows("removing", parent, first, last));
            });
    connect(&model, &Model::rowsRemoved, this,
            [tell](const QModelIndex& parent, int first, int last) {
                tell(rows("removed", parent, first, last));
            });
    connect(&model, &Model::modelReset, this, [tell] { tell(QStringLiteral("reset")); });
    connect(&model, &Model::layoutChanged, this, [tell] { tell(QStringLiteral("layout")); });
}

void TestConfigurationModelSignals::init()
{
    m_warnings.emplace();
    m_configuration.write("GPIB0::1::INSTR\n"
                          "GPIB0::2::INSTR\n"
                          "GPIB0::3::INSTR\n"
                          "DMM=TCPIP0::10.0.0.5::INSTR\n"
                          ":Provider=7\n"
                          ":SerialProperty[DeviceNo=3].Baudrate=19200\n");
    m_model = std::make_unique<ConfigurationModel>(nullptr);
    QCOMPARE(m_model->rowCount(), 4);
    listen(*m_model);
    m_told.clear();
}

void TestConfigurationModelSignals::cleanup()
{
    m_model.reset();
    QCOMPARE(m_warnings->all(), QStringList());
    m_warnings.reset();
}

void TestConfigurationModelSignals::hasTheSignalsAndSlotsThatConnectionsName()
{
    const QMetaObject& meta = ConfigurationModel::staticMetaObject;
    QStringList own;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        own.append(QLatin1String(method.methodType() == QMetaMethod::Signal ? "signal " : "slot ") +
                   QLatin1String(method.methodSignature()));
    }
    own.sort();
    QCOMPARE(own, (QStringList{QStringLiteral("signal dirtyHasChanged(bool)"),
                               QStringLiteral("signal editCompleted(QString)"),
                               QStringLiteral("slot addEntry()"),
                               QStringLiteral("slot removeSelectedEntry()"),
                               QStringLiteral("slot save()")}));
}

void TestConfigurationModelSignals::refreshReachesOnePastTheEnd_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("empty") << 0;
    QTest::newRow("one") << 1;
    QTest::newRow("four") << 4;
}

void TestConfigurationModelSignals::refreshReachesOnePastTheEnd()
{
    QFETCH(int, count);
    QVERIFY(m_model->removeRows(0, 4 - count));
    takeTold();
    m_model->refresh();
    QCOMPARE(takeTold(), refreshed(count));
}

void TestConfigurationModelSignals::addTellsOfARefresh()
{
    m_model->add(QStringLiteral("a"), QStringLiteral("b"));
    QCOMPARE(takeTold(), QStringList(QStringLiteral("dirty")) + refreshed(5));
    m_model->addEntry();
    QCOMPARE(takeTold(), refreshed(6));
}

void TestConfigurationModelSignals::removalNamesOneRowTooMany_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("count");
    QTest::newRow("first") << 0 << 1;
    QTest::newRow("last") << 3 << 1;
    QTest::newRow("two") << 1 << 2;
    QTest::newRow("all") << 0 << 4;
    QTest::newRow("none") << 2 << 0;
}

void TestConfigurationModelSignals::removalNamesOneRowTooMany()
{
    QFETCH(int, row);
    QFETCH(int, count);
    QVERIFY(m_model->removeRows(row, count));
    QCOMPARE(takeTold(),
             QStringList({rows("removing", {}, row, row + count), QStringLiteral("dirty"),
                          rows("removed", {}, row, row + count)}) +
                 refreshed(4 - count));
}

void TestConfigurationModelSignals::removalIsAnnouncedBeforeAndToldAfter()
{
    QList<int> counts;
    const auto note = [&] { counts.append(m_model->rowCount()); };
    connect(m_model.get(), &ConfigurationModel::rowsAboutToBeRemoved, this, note);
    connect(m_model.get(), &ConfigurationModel::rowsRemoved, this, note);
    QVERIFY(m_model->removeRows(1, 2));
    QCOMPARE(counts, (QList<int>{4, 2}));
}

void TestConfigurationModelSignals::editsTellTheTextAlone()
{
    const QModelIndex alias = m_model->index(0, 1);
    m_model->setData(alias, QStringLiteral(" my dev:1 "));
    // Dirtiness first; the view that edits repaints the cell unasked.
    QCOMPARE(takeTold(), (QStringList{QStringLiteral("dirty"), QStringLiteral("edit my_dev1")}));
    m_model->setData(alias, QStringLiteral("other"));
    m_model->setData(alias, QStringLiteral("other"));
    QCOMPARE(takeTold(), (QStringList{QStringLiteral("edit other"), QStringLiteral("edit other")}));
}

void TestConfigurationModelSignals::aNewResourceTellsOfDirtinessAlone()
{
    QItemSelectionModel selection(m_model.get());
    m_model->m_selectionModel = &selection;
    selection.select(m_model->index(1, 0),
                     QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    m_model->setResource(QStringLiteral("x"));
    QCOMPARE(takeTold(), QStringList(QStringLiteral("dirty")));
    m_model->setResource(QStringLiteral("y"));
    QCOMPARE(takeTold(), QStringList());
}

void TestConfigurationModelSignals::dirtinessIsToldOnlyWhenItChanges()
{
    QVERIFY(!m_model->isDirty());
    m_model->setDirty(false);
    QCOMPARE(takeTold(), QStringList());
    m_model->setDirty(true);
    m_model->setDirty(true);
    QVERIFY(m_model->isDirty());
    QCOMPARE(takeTold(), QStringList(QStringLiteral("dirty")));
    m_model->setDirty(false);
    m_model->setDirty(false);
    QVERIFY(!m_model->isDirty());
    QCOMPARE(takeTold(), QStringList(QStringLiteral("clean")));
}

namespace {

using Step = std::function<void(ConfigurationModel&)>;

void edit(ConfigurationModel& model, int column, const char* text)
{
    model.setData(model.index(3, column), QLatin1String(text));
}

void setBaudrate(ConfigurationModel& model, unsigned baudrate)
{
    QvVisa::SerialPropertiesMap ports;
    ports[3].baudrate = baudrate;
    model.setSerialProperties(ports);
}

void setResourceOfRow3(ConfigurationModel& model, const char* text)
{
    QItemSelectionModel selection(&model);
    selection.select(model.index(3, 0),
                     QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    model.m_selectionModel = &selection;
    model.setResource(QLatin1String(text));
    model.m_selectionModel = nullptr;
}

} // namespace
Q_DECLARE_METATYPE(Step)

void TestConfigurationModelSignals::everyChangeMakesDirtyOnce_data()
{
    QTest::addColumn<Step>("change");
    const auto row = [](const char* name, Step step) { QTest::newRow(name) << std::move(step); };
    row("resource", [](ConfigurationModel& model) { edit(model, 0, "x"); });
    row("alias", [](ConfigurationModel& model) { edit(model, 1, "x"); });
    row("add", [](ConfigurationModel& model) { model.add({}, {}); });
    row("add an empty entry", [](ConfigurationModel& model) { model.addEntry(); });
    row("remove", [](ConfigurationModel& model) { model.removeRows(0, 1); });
    row("set resource", [](ConfigurationModel& model) { setResourceOfRow3(model, "x"); });
    row("another baud rate", [](ConfigurationModel& model) { setBaudrate(model, 300); });
    row("another port", [](ConfigurationModel& model) {
        auto ports = model.getSerialProperties();
        ports[9];
        model.setSerialProperties(ports);
    });
    row("no port", [](ConfigurationModel& model) { model.setSerialProperties({}); });
    row("a board", [](ConfigurationModel& model) { model.setGpibProperties({{0, {}}}); });
    row("provider", [](ConfigurationModel& model) { model.setProvider(8); });
}

void TestConfigurationModelSignals::everyChangeMakesDirtyOnce()
{
    QFETCH(Step, change);
    change(*m_model);
    QVERIFY(m_model->isDirty());
    QCOMPARE(m_told.count(QStringLiteral("dirty")), 1);
    QCOMPARE(m_told.count(QStringLiteral("clean")), 0);

    // Dirty already: the same change in a second model that knows it is dirty tells no more.
    ConfigurationModel second(nullptr);
    second.setDirty(true);
    listen(second);
    takeTold();
    change(second);
    QVERIFY(second.isDirty());
    QCOMPARE(m_told.count(QStringLiteral("dirty")), 0);
    QCOMPARE(m_told.count(QStringLiteral("clean")), 0);
}

void TestConfigurationModelSignals::noChangeTellsNothing_data()
{
    QTest::addColumn<Step>("step");
    const auto row = [](const char* name, Step step) { QTest::newRow(name) << std::move(step); };
    row("same resource",
        [](ConfigurationModel& model) { edit(model, 0, "TCPIP0::10.0.0.5::INSTR"); });
    row("same alias once cleaned", [](ConfigurationModel& model) { edit(model, 1, " :DMM; "); });
    row("set the same resource",
        [](ConfigurationModel& model) { setResourceOfRow3(model, "TCPIP0::10.0.0.5::INSTR"); });
    row("equal ports", [](ConfigurationModel& model) { setBaudrate(model, 19200); });
    row("equal boards", [](ConfigurationModel& model) { model.setGpibProperties({}); });
    row("same provider", [](ConfigurationModel& model) { model.setProvider(7); });
    row("refused removal", [](ConfigurationModel& model) { model.removeRows(4, 1); });
    row("no selection", [](ConfigurationModel& model) { model.removeSelectedEntry(); });
}

void TestConfigurationModelSignals::noChangeTellsNothing()
{
    QFETCH(Step, step);
    step(*m_model);
    QVERIFY(!m_model->isDirty());
    QCOMPARE(m_told.filter(QRegularExpression(QStringLiteral("^(?!edit )"))), QStringList());
}

void TestConfigurationModelSignals::savingTellsOnlyWhenItCleans()
{
    m_model->save();
    QCOMPARE(takeTold(), QStringList());
    m_model->setDirty(true);
    takeTold();
    m_model->save();
    QCOMPARE(takeTold(), QStringList(QStringLiteral("clean")));
    QVERIFY(!m_model->isDirty());
}

void TestConfigurationModelSignals::loadingTellsOnlyWhenItCleans()
{
    m_model->loaddata();
    QCOMPARE(takeTold(), QStringList());
    m_model->setDirty(true);
    takeTold();
    m_model->loaddata();
    QCOMPARE(takeTold(), QStringList(QStringLiteral("clean")));
}

QTEST_GUILESS_MAIN(TestConfigurationModelSignals)
#include "TestConfigurationModelSignals.moc"
