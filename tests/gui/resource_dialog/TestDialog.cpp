// SPDX-License-Identifier: MIT
// The find dialog while no scan runs beside it.
#include "tests/gui/resource_dialog/ResourceDialogCase.h"
#include "tests/gui/shared/FontSize.h"
#include "tests/gui/shared/WindowTest.h"
#include "tests/support/BenchFixture.h"
#include "tests/support/ModalWindows.h"

#include <QBoxLayout>
#include <QIcon>

#include <optional>

using guitest::ResourceDialogCase;

class TestDialog : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void hasTitleIconAndSize();
    void hasItsWidgets();
    void nothingIsCutOff_data();
    void nothingIsCutOff();

    void listsTheCacheAndAsksNothing();
    void refreshAsksAgain();
    void refreshIsSeenByTheNextDialog();
    void refreshWithoutInstrumentsEmptiesTheList();
    void refreshLocksTheDialogMeanwhile();
    void refreshShowsAnEmptyListMeanwhile();

    void startsWithNothingSelected();
    void selects();
    void acceptsNothing();
    void cancels_data();
    void cancels();
    void doubleClickAccepts();
    void doubleClickOnEmptySpaceDoesNothing();
    void doubleClickThatDeselectsDoesNothing();
    void enterAccepts();
    void answersToItsCaller();

    void remembersPlaceAtEachHide();
    void restoresPlaceAtEachShow();
    void remembersMaximised();

private:
    void setUp() override;
    void tearDown() override;
    support::BenchFixture& bench() { return *m_bench; }

    std::optional<support::BenchFixture> m_bench;
};

/// Each case starts with three resources in the cache.
void TestDialog::setUp()
{
    m_bench.emplace("resource b\nresource a\nresource c\n");
    gui::ResourceDialog::updateResourceList();
    m_bench->clearCalls();
}

void TestDialog::tearDown()
{
    m_bench.reset();
}

void TestDialog::hasTitleIconAndSize()
{
    ResourceDialogCase find;
    const QWidget& window = find.dialog();
    QCOMPARE(window.objectName(), QStringLiteral("ResourceDialog"));
    QCOMPARE(window.windowTitle(), QStringLiteral("Find resources"));
    QCOMPARE(window.size(), QSize(492, 386));
    QVERIFY(!window.windowIcon().pixmap(32).isNull());
    QCOMPARE(window.windowIcon().pixmap(32).toImage(),
             QIcon(QStringLiteral(":/icons/Suchen_tra4d09cbe82cb7b.ico")).pixmap(32).toImage());
    QVERIFY(!window.windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
}

void TestDialog::hasItsWidgets()
{
    ResourceDialogCase find;
    const auto& outer = support::child<QVBoxLayout>(find.dialog(), "verticalLayout");
    const auto& inner = support::child<QVBoxLayout>(find.dialog(), "verticalLayout_2");
    const auto& row = support::child<QHBoxLayout>(find.dialog(), "horizontalLayout");
    QCOMPARE(find.dialog().layout(), &outer);
    QCOMPARE(outer.itemAt(0)->layout(), &inner);
    QCOMPARE(inner.itemAt(0)->widget(), &find.list());
    QCOMPARE(inner.itemAt(1)->layout(), &row);
    QCOMPARE(row.itemAt(0)->widget(), &find.refresh());
    QCOMPARE(row.itemAt(1)->widget(), &find.box());

    QCOMPARE(find.list().selectionMode(), QAbstractItemView::SingleSelection);
    QCOMPARE(find.list().accessibleName(), QStringLiteral("Found resources"));
    QCOMPARE(find.refresh().text(), QStringLiteral("Refresh"));
    QCOMPARE(find.refresh().toolTip(), QStringLiteral("Refresh"));
    QCOMPARE(find.refresh().iconSize(), QSize(24, 24));
    QVERIFY(!find.refresh().icon().pixmap(24).isNull());
    QCOMPARE(find.refresh().icon().pixmap(24).toImage(),
             QIcon(QStringLiteral(":/icons/Repeat4dfa017b54ff3.ico")).pixmap(24).toImage());
    QVERIFY(!find.refresh().autoRaise());
    QCOMPARE(find.box().orientation(), Qt::Horizontal);
    QVERIFY(!find.box().centerButtons());
    QCOMPARE(find.box().locale(), QLocale(QLocale::English, QLocale::UnitedStates));
    QCOMPARE(find.box().standardButtons(), QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QCOMPARE(find.box().button(QDialogButtonBox::Ok)->text(), QStringLiteral("Select"));
}

void TestDialog::nothingIsCutOff_data()
{
    QTest::addColumn<int>("pixels");
    QTest::newRow("what desktops have") << 13;
    QTest::newRow("half as much again") << 20;
}

void TestDialog::nothingIsCutOff()
{
    QFETCH(const int, pixels);
    const guitest::FontSize fontSize(pixels);
    ResourceDialogCase find;
    find.show();
    QCoreApplication::processEvents();
    QCOMPARE(find.dialog().size(), QSize(492, 386));
    for (const QWidget* widget :
         {static_cast<QWidget*>(&find.refresh()),
          static_cast<QWidget*>(find.box().button(QDialogButtonBox::Ok)),
          static_cast<QWidget*>(find.box().button(QDialogButtonBox::Cancel))}) {
        QVERIFY(widget->isVisible());
        QVERIFY(widget->width() >= widget->sizeHint().width());
        QVERIFY(widget->height() >= widget->sizeHint().height());
        QVERIFY(find.dialog().rect().contains(
            QRect(widget->mapTo(&find.dialog(), QPoint()), widget->size())));
    }
    QVERIFY(find.list().height() > find.dialog().height() / 2);
}

void TestDialog::listsTheCacheAndAsksNothing()
{
    bench().write("resource other\n");
    ResourceDialogCase find;
    QCOMPARE(find.listed(), QStringLiteral("a b c"));
    find.show();
    QCOMPARE(find.listed(), QStringLiteral("a b c"));
    QVERIFY(bench().calls().empty());
    QVERIFY(find.refresh().isEnabled() && find.box().isEnabled());
}

void TestDialog::refreshAsksAgain()
{
    ResourceDialogCase find;
    find.show();
    bench().write("resource z\nresource y\n");
    find.clickRow(0);
    find.clickRefresh();
    QCOMPARE(find.listed(), QStringLiteral("y z"));
    QCOMPARE(find.dialog().getResource(), QString());
    // One session, one search.
    QCOMPARE(bench().calls().size(), std::size_t{7});
}

void TestDialog::refreshIsSeenByTheNextDialog()
{
    ResourceDialogCase find;
    find.show();
    bench().write("resource z\n");
    find.clickRefresh();
    QCOMPARE(ResourceDialogCase().listed(), QStringLiteral("z"));
}

void TestDialog::refreshWithoutInstrumentsEmptiesTheList()
{
    ResourceDialogCase find;
    find.show();
    bench().write("");
    find.clickRefresh();
    QCOMPARE(find.list().count(), 0);
    QCOMPARE(ResourceDialogCase().list().count(), 0);
    QVERIFY(find.refresh().isEnabled() && find.box().isEnabled());
}

void TestDialog::startsWithNothingSelected()
{
    ResourceDialogCase find;
    QCOMPARE(find.dialog().getResource(), QString());
    find.show();
    QCOMPARE(find.dialog().getResource(), QString());
}

void TestDialog::selects()
{
    ResourceDialogCase find;
    find.show();
    find.clickRow(1);
    QCOMPARE(find.dialog().getResource(), QStringLiteral("b"));
    find.clickRow(2);
    QCOMPARE(find.dialog().getResource(), QStringLiteral("c"));
    QVERIFY(find.dialog().isVisible());
    find.click(QDialogButtonBox::Ok);
    QVERIFY(!find.dialog().isVisible());
    QCOMPARE(find.dialog().result(), int{QDialog::Accepted});
    QCOMPARE(find.dialog().getResource(), QStringLiteral("c"));
    // Nothing is kept for the next one.
    QCOMPARE(ResourceDialogCase().dialog().getResource(), QString());
}

void TestDialog::acceptsNothing()
{
    ResourceDialogCase find;
    find.show();
    find.click(QDialogButtonBox::Ok);
    QVERIFY(!find.dialog().isVisible());
    QCOMPARE(find.dialog().result(), int{QDialog::Accepted});
    QCOMPARE(find.dialog().getResource(), QString());
}

void TestDialog::cancels_data()
{
    QTest::addColumn<QString>("how");
    QTest::newRow("Cancel") << QStringLiteral("button");
    QTest::newRow("Escape") << QStringLiteral("key");
    QTest::newRow("closing") << QStringLiteral("close");
}

void TestDialog::cancels()
{
    QFETCH(const QString, how);
    ResourceDialogCase find;
    find.show();
    find.clickRow(1);
    if (how == QLatin1String("button")) {
        find.click(QDialogButtonBox::Cancel);
    } else if (how == QLatin1String("key")) {
        QTest::keyClick(&find.dialog(), Qt::Key_Escape);
    } else {
        find.dialog().close();
    }
    QVERIFY(!find.dialog().isVisible());
    QCOMPARE(find.dialog().result(), int{QDialog::Rejected});
}

void TestDialog::doubleClickAccepts()
{
    ResourceDialogCase find;
    find.show();
    find.doubleClick(find.placeOf(1));
    QVERIFY(!find.dialog().isVisible());
    QCOMPARE(find.dialog().result(), int{QDialog::Accepted});
    QCOMPARE(find.dialog().getResource(), QStringLiteral("b"));
}

void TestDialog::doubleClickOnEmptySpaceDoesNothing()
{
    ResourceDialogCase find;
    find.show();
    const QPoint below = find.list().viewport()->rect().bottomRight() - QPoint(5, 5);
    QVERIFY(find.list().itemAt(below) == nullptr);
    find.doubleClick(below);
    QVERIFY(find.dialog().isVisible());
    // Also where an item is selected.
    find.clickRow(0);
    find.doubleClick(below);
    QVERIFY(find.dialog().isVisible());
}

void TestDialog::doubleClickThatDeselectsDoesNothing()
{
    ResourceDialogCase find;
    find.show();
    find.clickRow(1);
    QWidget* viewport = find.list().viewport();
    QTest::mouseClick(viewport, Qt::LeftButton, Qt::ControlModifier, find.placeOf(1));
    QCOMPARE(find.dialog().getResource(), QString());
    QTest::mouseDClick(viewport, Qt::LeftButton, Qt::ControlModifier, find.placeOf(1));
    QVERIFY(find.dialog().isVisible());
    QCOMPARE(find.dialog().getResource(), QString());
}

void TestDialog::enterAccepts()
{
    ResourceDialogCase find;
    find.show();
    find.clickRow(2);
    QTest::keyClick(&find.list(), Qt::Key_Return);
    QVERIFY(!find.dialog().isVisible());
    QCOMPARE(find.dialog().result(), int{QDialog::Accepted});
    QCOMPARE(find.dialog().getResource(), QStringLiteral("c"));
}

void TestDialog::answersToItsCaller()
{
    for (const bool accepts : {true, false}) {
        gui::ResourceDialog dialog(nullptr);
        const support::ModalAnswer<gui::ResourceDialog> modal([accepts](
                                                                  gui::ResourceDialog& shown) {
            auto& box = support::child<QDialogButtonBox>(shown, "buttonBox");
            QTest::mouseClick(box.button(accepts ? QDialogButtonBox::Ok : QDialogButtonBox::Cancel),
                              Qt::LeftButton);
        });
        QCOMPARE(dialog.exec() != 0, accepts);
        QVERIFY(modal.wasShown());
    }
}

namespace {

QVariant setting(const char* key)
{
    return QSettings().value(QStringLiteral("ResourceDialog/") + QString::fromLatin1(key));
}

void set(const char* key, const QVariant& value)
{
    QSettings().setValue(QStringLiteral("ResourceDialog/") + QString::fromLatin1(key), value);
}

} // namespace

void TestDialog::remembersPlaceAtEachHide()
{
    ResourceDialogCase find;
    find.show();
    QVERIFY(!setting("size").isValid());
    find.dialog().setGeometry(31, 42, 501, 402);
    find.dialog().hide();
    QCOMPARE(setting("size").toSize(), QSize(501, 402));
    QCOMPARE(setting("pos").toPoint(), find.dialog().pos());
    QCOMPARE(setting("fullscreen").toBool(), false);
    find.show();
    find.dialog().resize(511, 412);
    find.dialog().hide();
    QCOMPARE(setting("size").toSize(), QSize(511, 412));
}

void TestDialog::restoresPlaceAtEachShow()
{
    ResourceDialogCase find;
    set("size", QSize(601, 402));
    set("pos", QPoint(21, 22));
    QCOMPARE(find.dialog().size(), QSize(492, 386));
    find.show();
    QCOMPARE(find.dialog().size(), QSize(601, 402));
    QCOMPARE(find.dialog().pos(), QPoint(21, 22));
    find.dialog().hide();
    set("size", QSize(621, 422));
    set("pos", QPoint(-30, 12));
    find.show();
    QCOMPARE(find.dialog().size(), QSize(621, 422));
    QCOMPARE(find.dialog().pos(), QPoint(-30, 12));
}

void TestDialog::remembersMaximised()
{
    ResourceDialogCase find;
    find.show();
    find.dialog().showMaximized();
    find.dialog().hide();
    QCOMPARE(setting("fullscreen").toBool(), true);
    gui::ResourceDialog next(nullptr);
    next.show();
    QVERIFY(next.isMaximized());
}

namespace {

/// Notes in which order the dialog locks, empties, fills and unlocks itself.
class Journal : public QObject
{
public:
    Journal(ResourceDialogCase& find, const support::BenchFixture& bench)
        : m_find(find),
          m_bench(bench)
    {
        find.dialog().installEventFilter(this);
        find.box().installEventFilter(this);
        find.refresh().installEventFilter(this);
        const QAbstractItemModel* model = find.list().model();
        connect(model, &QAbstractItemModel::modelReset, this,
                [this] { note(QStringLiteral("emptied")); });
        connect(model, &QAbstractItemModel::rowsInserted, this,
                [this] { note(QStringLiteral("filled")); });
    }

    QString text() const { return m_notes.join(QLatin1String("; ")); }

    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() == QEvent::CursorChange && object == &m_find.dialog()) {
            const Qt::CursorShape shape = m_find.dialog().cursor().shape();
            note(shape == Qt::WaitCursor    ? QStringLiteral("wait cursor")
                 : shape == Qt::ArrowCursor ? QStringLiteral("arrow cursor")
                                            : QStringLiteral("another cursor"));
        } else if (event->type() == QEvent::EnabledChange) {
            const auto* widget = static_cast<QWidget*>(object);
            note(widget->objectName() +
                 (widget->isEnabled() ? QLatin1String(" on") : QLatin1String(" off")));
        }
        return false;
    }

private:
    void note(const QString& what)
    {
        const QString now = QStringLiteral("%1 (%2 calls)").arg(what).arg(m_bench.calls().size());
        // Qt tells of one new cursor twice.
        if (m_notes.isEmpty() || m_notes.last() != now) {
            m_notes.append(now);
        }
    }

    ResourceDialogCase& m_find;
    const support::BenchFixture& m_bench;
    QStringList m_notes;
};

} // namespace

void TestDialog::refreshLocksTheDialogMeanwhile()
{
    ResourceDialogCase find;
    find.show();
    const Journal journal(find, bench());
    find.clickRefresh();
    QCOMPARE(journal.text(),
             QStringLiteral("buttonBox off (0 calls); refreshButton off (0 calls); "
                            "wait cursor (0 calls); emptied (0 calls); filled (8 calls); "
                            "arrow cursor (8 calls); buttonBox on (8 calls); "
                            "refreshButton on (8 calls)"));
}

namespace {

/// Notes whether a list was painted without items before the library was asked.
class EmptyListWatch : public QObject
{
public:
    EmptyListWatch(const QListWidget& list, const support::BenchFixture& bench)
        : m_list(list),
          m_bench(bench)
    {
        list.viewport()->installEventFilter(this);
    }

    bool wasPainted() const { return m_wasPainted; }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && m_list.count() == 0 && m_bench.calls().empty()) {
            m_wasPainted = true;
        }
        return false;
    }

private:
    const QListWidget& m_list;
    const support::BenchFixture& m_bench;
    bool m_wasPainted = false;
};

} // namespace

void TestDialog::refreshShowsAnEmptyListMeanwhile()
{
    ResourceDialogCase find;
    find.show();
    QVERIFY(QTest::qWaitForWindowExposed(&find.dialog()));
    const EmptyListWatch watch(find.list(), bench());
    find.clickRefresh();
    QVERIFY(watch.wasPainted());
    QCOMPARE(find.listed(), QStringLiteral("a b c"));
}

static const guitest::Registration<TestDialog> s_registration;
#include "TestDialog.moc"
