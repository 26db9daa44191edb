// SPDX-License-Identifier: MIT
#include "model/ConfigurationModel.h"
#include "tests/model/ModelFixture.h"
#include "tests/support/ConfigurationFixture.h"
#include "tests/support/QtWarnings.h"

#include <QSignalSpy>
#include <QTest>

#include <limits>
#include <memory>
#include <optional>

using support::Rows;
using support::rowsOf;
using support::textAt;

/// What the table says of itself and what an edit makes of a text.
class TestConfigurationModel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void hasTwoColumnsAndARowForEachEntry();
    void everyCellCanBeSelectedAndEdited();
    void namesItsColumns_data();
    void namesItsColumns();
    void showsACellInTwoRoles_data();
    void showsACellInTwoRoles();
    void hasNothingToShowBesideItsCells_data();
    void hasNothingToShowBesideItsCells();

    void cleansAnEdit_data();
    void cleansAnEdit();
    void editsTakeWhateverTurnsIntoText();
    void passesOverAnEditOfAnotherRole();
    void passesOverAnEditBesideItsCells_data();
    void passesOverAnEditBesideItsCells();

private:
    support::ConfigurationFixture m_configuration;
    std::optional<support::QtWarnings> m_warnings;
    std::unique_ptr<ConfigurationModel> m_model;
};

void TestConfigurationModel::init()
{
    m_warnings.emplace();
    m_configuration.write("GPIB0::1::INSTR\n"
                          "GPIB0::2::INSTR\n"
                          "DMM=TCPIP0::10.0.0.5::INSTR\n");
    m_model = std::make_unique<ConfigurationModel>(nullptr);
    QCOMPARE(m_model->rowCount(), 3);
}

void TestConfigurationModel::cleanup()
{
    m_model.reset();
    QCOMPARE(m_warnings->all(), QStringList());
    m_warnings.reset();
}

void TestConfigurationModel::hasTwoColumnsAndARowForEachEntry()
{
    QCOMPARE(m_model->columnCount(), 2);
    QCOMPARE(m_model->rowCount(), 3);
    // A table has no tree beneath its cells; asked all the same it says what it is.
    QCOMPARE(m_model->columnCount(m_model->index(0, 0)), 2);
    QCOMPARE(m_model->rowCount(m_model->index(0, 0)), 3);
}

void TestConfigurationModel::everyCellCanBeSelectedAndEdited()
{
    const Qt::ItemFlags expected = Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemIsEnabled;
    QCOMPARE(m_model->flags(m_model->index(0, 0)), expected);
    QCOMPARE(m_model->flags(m_model->index(2, 1)), expected);
    QCOMPARE(m_model->flags(QModelIndex()), expected);
}

void TestConfigurationModel::namesItsColumns_data()
{
    QTest::addColumn<int>("section");
    QTest::addColumn<Qt::Orientation>("orientation");
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("expected");

    const int display = Qt::DisplayRole;
    QTest::newRow("resource") << 0 << Qt::Horizontal << display
                              << QVariant(QStringLiteral("Resource identifier"));
    QTest::newRow("alias") << 1 << Qt::Horizontal << display << QVariant(QStringLiteral("Alias"));
    QTest::newRow("one past") << 2 << Qt::Horizontal << display << QVariant();
    QTest::newRow("negative") << -1 << Qt::Horizontal << display << QVariant();
    QTest::newRow("row 0") << 0 << Qt::Vertical << display << QVariant();
    QTest::newRow("row 1") << 1 << Qt::Vertical << display << QVariant();
    QTest::newRow("edit role") << 0 << Qt::Horizontal << int(Qt::EditRole) << QVariant();
    QTest::newRow("tool tip") << 1 << Qt::Horizontal << int(Qt::ToolTipRole) << QVariant();
    QTest::newRow("alignment") << 0 << Qt::Horizontal << int(Qt::TextAlignmentRole) << QVariant();
}

void TestConfigurationModel::namesItsColumns()
{
    QFETCH(int, section);
    QFETCH(Qt::Orientation, orientation);
    QFETCH(int, role);
    QFETCH(QVariant, expected);
    const QVariant header = m_model->headerData(section, orientation, role);
    QCOMPARE(header.isValid(), expected.isValid());
    QCOMPARE(header, expected);
}

void TestConfigurationModel::showsACellInTwoRoles_data()
{
    QTest::addColumn<int>("role");
    QTest::newRow("display") << int(Qt::DisplayRole);
    QTest::newRow("edit") << int(Qt::EditRole);
}

void TestConfigurationModel::showsACellInTwoRoles()
{
    QFETCH(int, role);
    QCOMPARE(m_model->data(m_model->index(1, 0), role),
             QVariant(QStringLiteral("GPIB0::2::INSTR")));
    QCOMPARE(m_model->data(m_model->index(1, 1), role), QVariant(QString()));
    QCOMPARE(m_model->data(m_model->index(2, 0), role),
             QVariant(QStringLiteral("TCPIP0::10.0.0.5::INSTR")));
    QCOMPARE(m_model->data(m_model->index(2, 1), role), QVariant(QStringLiteral("DMM")));
}

namespace {

/// Gives out indexes that lie outside the table, as a stale view may hold them.
class AnyIndex : public ConfigurationModel
{
public:
    using ConfigurationModel::ConfigurationModel;
    QModelIndex at(int row, int column) const { return createIndex(row, column); }
};

} // namespace

void TestConfigurationModel::hasNothingToShowBesideItsCells_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("role");

    for (const int role : {int(Qt::DecorationRole), int(Qt::ToolTipRole), int(Qt::CheckStateRole),
                           int(Qt::TextAlignmentRole), int(Qt::UserRole), -1}) {
        QTest::addRow("role %d", role) << 0 << 0 << role;
    }
    QTest::newRow("third column") << 0 << 2 << int(Qt::DisplayRole);
    QTest::newRow("no column") << 0 << -1 << int(Qt::DisplayRole);
    QTest::newRow("one row past") << 3 << 0 << int(Qt::DisplayRole);
    QTest::newRow("far past") << std::numeric_limits<int>::max() << 1 << int(Qt::EditRole);
    QTest::newRow("no row") << -1 << 0 << int(Qt::DisplayRole);
}

void TestConfigurationModel::hasNothingToShowBesideItsCells()
{
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(int, role);
    const AnyIndex model(nullptr);
    QCOMPARE(model.rowCount(), 3);
    QVERIFY(!model.data(model.at(row, column), role).isValid());
}

void TestConfigurationModel::cleansAnEdit_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("resource");
    QTest::addColumn<QString>("alias");

    const auto row = [](const char* name, const QString& typed, const QString& resource,
                        const QString& alias) {
        QTest::newRow(name) << typed << resource << alias;
    };
    const auto same = [&](const char* name, const QString& typed, const QString& stored) {
        row(name, typed, stored, stored);
    };
    row("all at once", QStringLiteral("  my dev:1 #x "), QStringLiteral("my_dev:1_x"),
        QStringLiteral("my_dev1_x"));
    same("nothing", QString(), QString());
    same("blanks alone", QStringLiteral("   "), QString());
    same("kept as it is", QStringLiteral("My-Dev.1,(x)"), QStringLiteral("My-Dev.1,(x)"));
    same("each blank counts", QStringLiteral("a  b   c"), QStringLiteral("a__b___c"));
    same("white space at the ends", QStringLiteral("\t\n\r a\v\f"), QStringLiteral("a"));
    same("no-break space at the ends", QStringLiteral("\u00A0a\u00A0"), QStringLiteral("a"));
    same("tab inside", QStringLiteral("a\tb"), QStringLiteral("a\tb"));
    same("deleted alone", QStringLiteral("=#;=#;"), QString());
    same("deleted everywhere", QStringLiteral("=a#b;c="), QStringLiteral("abc"));
    // Trimming comes first: what the deletion lays bare stays.
    same("blank behind a hash", QStringLiteral("# a #"), QStringLiteral("_a_"));
    same("underscores", QStringLiteral("_a_"), QStringLiteral("_a_"));
    row("colons", QStringLiteral("::a::b:"), QStringLiteral("::a::b:"), QStringLiteral("ab"));
    row("colons alone", QStringLiteral(":::"), QStringLiteral(":::"), QString());
    same("beyond Latin-1", QStringLiteral("\u20ACé €"), QStringLiteral("\u20ACé_€"));
    const QString zero = QString(QChar(u'a')) + QChar(0) + QChar(u'b');
    same("zero character", zero, zero);
    row("very long", QString(100000, QChar(u' ')) + QString(100000, QChar(u':')) + QChar(u'x'),
        QString(100000, QChar(u':')) + QChar(u'x'), QStringLiteral("x"));
}

void TestConfigurationModel::cleansAnEdit()
{
    QFETCH(QString, typed);
    QFETCH(QString, resource);
    QFETCH(QString, alias);
    const Rows before = rowsOf(*m_model);
    QSignalSpy completed(m_model.get(), SIGNAL(editCompleted(QString)));

    QVERIFY(m_model->setData(m_model->index(1, 0), typed));
    QVERIFY(m_model->setData(m_model->index(1, 1), typed, Qt::EditRole));

    QCOMPARE(rowsOf(*m_model), (Rows{before[0], {resource, alias}, before[2]}));
    QCOMPARE(completed, (QList<QVariantList>{{resource}, {alias}}));
}

void TestConfigurationModel::editsTakeWhateverTurnsIntoText()
{
    QVERIFY(m_model->setData(m_model->index(0, 0), 42));
    QCOMPARE(textAt(*m_model, 0, 0), QStringLiteral("42"));
    QVERIFY(m_model->setData(m_model->index(0, 0), QByteArray("a b")));
    QCOMPARE(textAt(*m_model, 0, 0), QStringLiteral("a_b"));
    QVERIFY(m_model->setData(m_model->index(0, 0), QVariant()));
    QCOMPARE(textAt(*m_model, 0, 0), QString());
}

void TestConfigurationModel::passesOverAnEditOfAnotherRole()
{
    const Rows before = rowsOf(*m_model);
    QSignalSpy completed(m_model.get(), SIGNAL(editCompleted(QString)));
    for (const int role : {int(Qt::DisplayRole), int(Qt::CheckStateRole), int(Qt::UserRole), -1}) {
        // True is deliberate.
        QVERIFY(m_model->setData(m_model->index(0, 0), QStringLiteral("other"), role));
    }
    QCOMPARE(rowsOf(*m_model), before);
    QVERIFY(!m_model->isDirty());
    QCOMPARE(completed.count(), 0);
}

void TestConfigurationModel::passesOverAnEditBesideItsCells_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::newRow("third column") << 0 << 2;
    QTest::newRow("no column") << 0 << -1;
    QTest::newRow("one row past") << 3 << 0;
    QTest::newRow("far past") << std::numeric_limits<int>::max() << 1;
    QTest::newRow("no index") << -1 << -1;
}

void TestConfigurationModel::passesOverAnEditBesideItsCells()
{
    QFETCH(int, row);
    QFETCH(int, column);
    AnyIndex model(nullptr);
    const Rows before = rowsOf(model);
    QSignalSpy completed(&model, SIGNAL(editCompleted(QString)));
    QVERIFY(model.setData(model.at(row, column), QStringLiteral("x y")));
    QCOMPARE(rowsOf(model), before);
    QVERIFY(!model.isDirty());
    QCOMPARE(completed, (QList<QVariantList>{{QStringLiteral("x_y")}}));
}

QTEST_GUILESS_MAIN(TestConfigurationModel)
#include "TestConfigurationModel.moc"
