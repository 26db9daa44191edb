// SPDX-License-Identifier: MIT
// The find dialog while no other search is running.
#include "tests/gui/common/Settings.h"
#include "tests/gui/resource_dialog/ResourceDialogTest.h"
#include "tests/support/ModalWindows.h"

#include <functional>
#include <utility>

namespace {

/// Records the state of a dialog when its list is painted without entries.
class EmptyPaint : public QObject
{
public:
    EmptyPaint(QListWidget& list, std::function<QString()> state)
        : m_list(list),
          m_state(std::move(state))
    {
        list.viewport()->installEventFilter(this);
    }

    QStringList states() const { return m_states; }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && m_list.count() == 0) {
            m_states.append(m_state());
        }
        return false;
    }

private:
    QListWidget& m_list;
    std::function<QString()> m_state;
    QStringList m_states;
};

} // namespace

class TestDialog : public guitest::ResourceDialogTest
{
    Q_OBJECT

private slots:
    void cacheIsListedWithoutASearch()
    {
        bench().write("resource other\n");
        QCOMPARE(listed(), QStringLiteral("a b c"));
        QCOMPARE(dialog().getResource(), QString());
        show();
        QCOMPARE(listed(), QStringLiteral("a b c"));
        QCOMPARE(dialog().getResource(), QString());
        QVERIFY(bench().calls().empty());
        QVERIFY(refresh().isEnabled() && box().isEnabled());
    }

    void refreshReplacesListAndCache()
    {
        show();
        clickRow(0);
        for (const auto& [lines, found] :
             {std::pair("resource z\nresource y\n", "y z"), std::pair("", "")}) {
            bench().write(lines);
            clickRefresh();
            QCOMPARE(listed(), QString::fromLatin1(found));
            QCOMPARE(cached(), listed());
            QCOMPARE(dialog().getResource(), QString());
        }
    }

    void dialogIsDisabledAndEmptyDuringARefresh()
    {
        show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog()));
        const auto state = [this] {
            return QStringLiteral("%1 calls, buttons %2 %3, cursor %4")
                .arg(bench().calls().size())
                .arg(box().isEnabled())
                .arg(refresh().isEnabled())
                .arg(dialog().cursor().shape());
        };
        const EmptyPaint painted(list(), state);
        clickRefresh();
        QCOMPARE(
            painted.states(),
            QStringList(QStringLiteral("0 calls, buttons 0 0, cursor %1").arg(Qt::WaitCursor)));
        QCOMPARE(state(), QStringLiteral("8 calls, buttons 1 1, cursor %1").arg(Qt::ArrowCursor));
    }

    void buttonsAndKeysEndTheDialog_data()
    {
        columns<bool, int>("isSelected", "result");
        QTest::newRow("Select") << true << int{QDialog::Accepted};
        QTest::newRow("Select, no entry") << false << int{QDialog::Accepted};
        QTest::newRow("Enter") << true << int{QDialog::Accepted};
        QTest::newRow("Cancel") << true << int{QDialog::Rejected};
        QTest::newRow("Escape") << true << int{QDialog::Rejected};
        QTest::newRow("closing") << true << int{QDialog::Rejected};
    }

    void buttonsAndKeysEndTheDialog()
    {
        QFETCH(const bool, isSelected);
        const support::ModalAnswer<gui::ResourceDialog> modal([&](gui::ResourceDialog& shown) {
            if (isSelected) {
                clickRow(2);
            }
            const QByteArray way = QTest::currentDataTag();
            if (way.startsWith("Select")) {
                guitest::clickButton(shown, QDialogButtonBox::Ok);
            } else if (way == "Cancel") {
                guitest::clickButton(shown, QDialogButtonBox::Cancel);
            } else if (way == "closing") {
                shown.close();
            } else {
                QTest::keyClick(&list(), way == "Enter" ? Qt::Key_Return : Qt::Key_Escape);
            }
            QVERIFY(!shown.isVisible());
        });
        QTEST(dialog().exec(), "result");
        QVERIFY(modal.wasShown());
        QCOMPARE(dialog().getResource(), isSelected ? QStringLiteral("c") : QString());
    }

    void doubleClickAcceptsAnEntryOnly_data()
    {
        QTest::addColumn<QByteArray>("where");
        for (const char* where :
             {"entry", "empty space", "empty space, entry selected", "entry that Ctrl deselects"}) {
            QTest::newRow(where) << QByteArray(where);
        }
    }

    void doubleClickAcceptsAnEntryOnly()
    {
        QFETCH(const QByteArray, where);
        show();
        QWidget* viewport = list().viewport();
        const bool deselects = where == "entry that Ctrl deselects";
        const Qt::KeyboardModifier modifier = deselects ? Qt::ControlModifier : Qt::NoModifier;
        QPoint point = centreOf(1);
        if (where.startsWith("empty space")) {
            point = viewport->rect().bottomRight() - QPoint(5, 5);
            QVERIFY(list().itemAt(point) == nullptr);
        }
        if (deselects || where.endsWith("entry selected")) {
            clickRow(1);
        }
        QTest::mouseClick(viewport, Qt::LeftButton, modifier, point);
        QTest::mouseDClick(viewport, Qt::LeftButton, modifier, point);
        QCOMPARE(dialog().isVisible(), where != "entry");
        if (where == "entry") {
            QCOMPARE(dialog().result(), int{QDialog::Accepted});
            QCOMPARE(dialog().getResource(), QStringLiteral("b"));
        }
    }

    void keysRefreshSelectAndAccept()
    {
        show();
        QTRY_COMPARE(QApplication::focusWidget(), &list());
        QTest::keyClick(&list(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), &refresh());
        QTest::keyClick(&refresh(), Qt::Key_Space);
        QVERIFY(!bench().calls().empty());
        list().setFocus();
        // The first key selects the first entry.
        QTest::keyClick(&list(), Qt::Key_Down);
        QTest::keyClick(&list(), Qt::Key_Down);
        QTest::keyClick(&list(), Qt::Key_Return);
        QCOMPARE(dialog().result(), int{QDialog::Accepted});
        QCOMPARE(dialog().getResource(), QStringLiteral("b"));
    }

    void everyShowRestoresAndEveryHideWritesTheSettings()
    {
        const QString group = QStringLiteral("ResourceDialog");
        for (const int width : {601, 621}) {
            guitest::store(group, "size", QSize(width, 402));
            show();
            QCOMPARE(dialog().size(), QSize(width, 402));
            dialog().resize(width + 1, 402);
            dialog().hide();
            QCOMPARE(QSettings().value(group + QStringLiteral("/size")).toSize(),
                     QSize(width + 1, 402));
        }
    }

private:
    void setUp() override
    {
        scan("resource b\nresource a\nresource c\n");
        construct();
    }
};

static const guitest::Registration<TestDialog> s_registerDialog;
#include "TestDialog.moc"
