// SPDX-License-Identifier: MIT
#include "tests/support/QtWarnings.h"

#include "tests/gui/shared/WindowTest.h"

#include <thread>

/// The guard that the window tests rely on must itself notice.
class TestQtWarnings : public QObject
{
    Q_OBJECT

private slots:
    void notesAConnectionToNothing();
    void notesWhatAnotherThreadSays();
    void forgetsWhatIsTaken();
    void leavesOutWhatIsNoWarning();
    void putsTheFormerHandlerBack();
};

void TestQtWarnings::notesAConnectionToNothing()
{
    const support::QtWarnings warnings;
    connect(this, SIGNAL(destroyed()), this, SLOT(noSuchSlot()));
    QCOMPARE(warnings.all().size(), 1);
    QVERIFY(warnings.all().first().startsWith(QLatin1String("QObject::connect: No such slot")));
}

void TestQtWarnings::notesWhatAnotherThreadSays()
{
    const support::QtWarnings warnings;
    std::thread([] { qWarning("from elsewhere"); }).join();
    QCOMPARE(warnings.all(), QStringList(QStringLiteral("from elsewhere")));
}

void TestQtWarnings::forgetsWhatIsTaken()
{
    support::QtWarnings warnings;
    qCritical("once");
    QCOMPARE(warnings.take(), QStringList(QStringLiteral("once")));
    QCOMPARE(warnings.all(), QStringList());
}

void TestQtWarnings::leavesOutWhatIsNoWarning()
{
    const support::QtWarnings warnings;
    qDebug("a remark");
    qInfo("a piece of news");
    qWarning("This plugin does not support raise()");
    QCOMPARE(warnings.all(), QStringList());
}

void TestQtWarnings::putsTheFormerHandlerBack()
{
    const QtMessageHandler former = qInstallMessageHandler(nullptr);
    qInstallMessageHandler(former);
    {
        const support::QtWarnings warnings;
    }
    const QtMessageHandler now = qInstallMessageHandler(nullptr);
    qInstallMessageHandler(now);
    QVERIFY(now == former);
}

static const guitest::Registration<TestQtWarnings> s_registration;
#include "TestQtWarnings.moc"
