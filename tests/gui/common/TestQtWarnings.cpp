// SPDX-License-Identifier: MIT
// The guard that makes a case fail that causes a warning.
#include "tests/gui/common/WindowTest.h"

#include <thread>

class TestQtWarnings : public QObject
{
    Q_OBJECT

private slots:
    void connectionToNoSlotIsRecorded()
    {
        const support::QtWarnings warnings;
        connect(this, SIGNAL(destroyed()), this, SLOT(noSuchSlot()));
        QCOMPARE(warnings.all().size(), 1);
        QVERIFY(warnings.all().first().startsWith(QLatin1String("QObject::connect: No such slot")));
    }

    void warningOfAnotherThreadIsRecorded()
    {
        const support::QtWarnings warnings;
        std::thread([] { qWarning("of another thread"); }).join();
        QCOMPARE(warnings.all(), QStringList(QStringLiteral("of another thread")));
    }

    void takenWarningsAreRemoved()
    {
        support::QtWarnings warnings;
        qCritical("once");
        QCOMPARE(warnings.take(), QStringList(QStringLiteral("once")));
        QCOMPARE(warnings.all(), QStringList());
    }

    void messagesBelowAWarningAreNotRecorded()
    {
        const support::QtWarnings warnings;
        qDebug("debug");
        qInfo("info");
        qWarning("This plugin does not support raise()");
        QCOMPARE(warnings.all(), QStringList());
    }

    void formerHandlerIsRestored()
    {
        const auto currentHandler = [] {
            const QtMessageHandler handler = qInstallMessageHandler(nullptr);
            qInstallMessageHandler(handler);
            return handler;
        };
        const QtMessageHandler former = currentHandler();
        {
            const support::QtWarnings warnings;
        }
        QVERIFY(currentHandler() == former);
    }
};

static const guitest::Registration<TestQtWarnings> s_registerQtWarnings;
#include "TestQtWarnings.moc"
