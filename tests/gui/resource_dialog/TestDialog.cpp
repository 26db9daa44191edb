// SPDX-License-Identifier: MIT
// The find dialog while no other search is running.
#include "tests/gui/resource_dialog/ResourceDialogTest.h"
#include "tests/support/ModalWindows.h"

#include <functional>

namespace {

/// Records, with the number of library calls so far, when the dialog is disabled, emptied, painted
/// without entries, filled and enabled.
class Journal : public QObject
{
public:
    Journal(QDialog& dialog, QListWidget& list, std::function<std::size_t()> calls)
        : m_dialog(dialog),
          m_list(list),
          m_calls(std::move(calls))
    {
        for (QWidget* widget : {static_cast<QWidget*>(&dialog), list.viewport(),
                                dialog.findChild<QWidget*>(QStringLiteral("buttonBox")),
                                dialog.findChild<QWidget*>(QStringLiteral("refreshButton"))}) {
            widget->installEventFilter(this);
        }
        const QAbstractItemModel* model = list.model();
        connect(model, &QAbstractItemModel::modelReset, this, [this] { note("emptied"); });
        connect(model, &QAbstractItemModel::rowsInserted, this, [this] { note("filled"); });
    }

    QString text() const { return m_notes.join(QLatin1Char(' ')); }

    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() == QEvent::CursorChange && object == &m_dialog) {
            const Qt::CursorShape shape = m_dialog.cursor().shape();
            note(shape == Qt::WaitCursor    ? "wait-cursor"
                 : shape == Qt::ArrowCursor ? "arrow-cursor"
                                            : "other-cursor");
        } else if (event->type() == QEvent::EnabledChange && object != m_list.viewport()) {
            const auto* widget = static_cast<QWidget*>(object);
            note(qPrintable(widget->objectName() +
                            QLatin1String(widget->isEnabled() ? "-on" : "-off")));
        } else if (event->type() == QEvent::Paint && object == m_list.viewport() &&
                   m_list.count() == 0) {
            note("painted-empty");
        }
        return false;
    }

private:
    void note(const char* what)
    {
        const QString now = QStringLiteral("%1:%2").arg(m_calls()).arg(QLatin1String(what));
        // Qt announces one new cursor twice.
        if (m_notes.isEmpty() || m_notes.last() != now) {
            m_notes.append(now);
        }
    }

    QDialog& m_dialog;
    QListWidget& m_list;
    std::function<std::size_t()> m_calls;
    QStringList m_notes;
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

    void refreshReplacesListAndCache_data()
    {
        columns<QByteArray, QString, int>("bench", "listed", "calls");
        QTest::newRow("other instruments") << QByteArray("resource z\nresource y\n") << "y z" << 7;
        QTest::newRow("no instruments") << QByteArray() << "" << 5;
    }

    void refreshReplacesListAndCache()
    {
        QFETCH(const QByteArray, bench);
        show();
        clickRow(0);
        this->bench().write(bench.toStdString());
        clickRefresh();
        QTEST(listed(), "listed");
        QTEST(cached(), "listed");
        QTEST(int(this->bench().calls().size()), "calls");
        QCOMPARE(dialog().getResource(), QString());
        QVERIFY(refresh().isEnabled() && box().isEnabled());
    }

    void refreshDisablesAndEmptiesTheDialogMeanwhile()
    {
        show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog()));
        const Journal journal(dialog(), list(), [this] { return bench().calls().size(); });
        clickRefresh();
        QCOMPARE(journal.text(), QStringLiteral("0:buttonBox-off 0:refreshButton-off 0:wait-cursor "
                                                "0:emptied 0:painted-empty 8:filled 8:arrow-cursor "
                                                "8:buttonBox-on 8:refreshButton-on"));
    }

    void selectedResourceIsReturned()
    {
        show();
        clickRow(1);
        QCOMPARE(dialog().getResource(), QStringLiteral("b"));
        clickRow(2);
        guitest::clickButton(dialog(), QDialogButtonBox::Ok);
        QCOMPARE(dialog().getResource(), QStringLiteral("c"));
        construct();
        QCOMPARE(dialog().getResource(), QString());
    }

    void buttonsAndKeysEndTheDialog_data()
    {
        columns<QByteArray, bool, int>("way", "isSelected", "result");
        QTest::newRow("Select") << QByteArray("Ok") << true << int{QDialog::Accepted};
        QTest::newRow("Select, no entry") << QByteArray("Ok") << false << int{QDialog::Accepted};
        QTest::newRow("Enter") << QByteArray("Enter") << true << int{QDialog::Accepted};
        QTest::newRow("Cancel") << QByteArray("Cancel") << true << int{QDialog::Rejected};
        QTest::newRow("Escape") << QByteArray("Escape") << true << int{QDialog::Rejected};
        QTest::newRow("closing") << QByteArray("close") << true << int{QDialog::Rejected};
    }

    void buttonsAndKeysEndTheDialog()
    {
        QFETCH(const QByteArray, way);
        QFETCH(const bool, isSelected);
        const support::ModalAnswer<gui::ResourceDialog> modal([&](gui::ResourceDialog& shown) {
            if (isSelected) {
                clickRow(2);
            }
            if (way == "Ok" || way == "Cancel") {
                guitest::clickButton(shown,
                                     way == "Ok" ? QDialogButtonBox::Ok : QDialogButtonBox::Cancel);
            } else if (way == "Enter") {
                QTest::keyClick(&list(), Qt::Key_Return);
            } else if (way == "Escape") {
                QTest::keyClick(&shown, Qt::Key_Escape);
            } else {
                shown.close();
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

private:
    void setUp() override
    {
        scan("resource b\nresource a\nresource c\n");
        construct();
    }
};

static const guitest::Registration<TestDialog> s_registerDialog;
#include "TestDialog.moc"
