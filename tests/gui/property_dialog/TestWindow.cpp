// SPDX-License-Identifier: MIT
#include "tests/gui/property_dialog/PropertyDialogCase.h"
#include "tests/gui/shared/WindowTest.h"
#include "tests/support/ModalWindows.h"

#include <QAbstractButton>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QTabBar>
#include <QWindow>

using guitest::PropertyDialogCase;

namespace {

constexpr const char* s_twoPorts = "resource ASRL1::INSTR\nresource ASRL3::INSTR\n";

QString key(const char* name)
{
    return QStringLiteral("PropertyDialog/") + QString::fromLatin1(name);
}

QVariant stored(const char* name)
{
    return QSettings().value(key(name));
}

void store(const char* name, const QVariant& value)
{
    QSettings().setValue(key(name), value);
}

QString currentTab(PropertyDialogCase& test)
{
    return test.widget<QTabWidget>("tabWidget").currentWidget()->objectName();
}

/// The user's font for one case, at a multiple of its size.
class FontSize
{
public:
    explicit FontSize(double factor) : m_former(QApplication::font())
    {
        QFont font = m_former;
        font.setPointSizeF(font.pointSizeF() * factor);
        QApplication::setFont(font);
    }
    ~FontSize() { QApplication::setFont(m_former); }
    FontSize(const FontSize&) = delete;
    FontSize& operator=(const FontSize&) = delete;

private:
    QFont m_former;
};

/// What a widget lacks to show its text whole, empty where it lacks nothing.
QString lack(const QWidget& widget)
{
    QSize needed = widget.sizeHint();
    if (const auto* label = qobject_cast<const QLabel*>(&widget);
        label != nullptr && label->wordWrap()) {
        needed = QSize(0, label->heightForWidth(label->width()));
    } else if (const auto* combo = qobject_cast<const QComboBox*>(&widget);
               combo != nullptr && combo->count() == 0) {
        return {};
    }
    const bool isWhole = widget.width() >= needed.width() && widget.height() >= needed.height();
    return isWhole ? QString()
                   : QStringLiteral("%1 has %2x%3, needs %4x%5")
                         .arg(widget.objectName())
                         .arg(widget.width())
                         .arg(widget.height())
                         .arg(needed.width())
                         .arg(needed.height());
}

/// Everything of the present tab, and the buttons, that would be cut off.
QStringList lacks(const QWidget& dialog)
{
    QStringList result;
    int looked = 0;
    for (const QWidget* widget : dialog.findChildren<QWidget*>()) {
        const bool holdsText = qobject_cast<const QLabel*>(widget) != nullptr ||
                               qobject_cast<const QComboBox*>(widget) != nullptr ||
                               qobject_cast<const QLineEdit*>(widget) != nullptr ||
                               qobject_cast<const QGroupBox*>(widget) != nullptr ||
                               qobject_cast<const QTabBar*>(widget) != nullptr ||
                               qobject_cast<const QAbstractButton*>(widget) != nullptr;
        if (widget->isVisible() && holdsText) {
            ++looked;
            if (const QString missing = lack(*widget); !missing.isEmpty()) {
                result.append(missing);
            }
        }
    }
    // Two labels or more, a field and the buttons are there on every tab.
    return looked >= 5 ? result : QStringList(QStringLiteral("only %1 looked at").arg(looked));
}

} // namespace

/// The dialog as a window: its size, its place, its tab, and what it remembers of them.
class TestWindow : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void beginsAtItsDesignedSize();
    void showsEveryTextWhole_data();
    void showsEveryTextWhole();
    void longPortNamesDoNotWidenIt();
    void remembersSizeAndPlace();
    void writesItsSettingsWhenDestroyed();
    void opensOnTheStoredTab_data();
    void opensOnTheStoredTab();
    void comesBackToTheSerialPorts();
    void isModalWhenItOpensMaximised();
    void isRunMaximised_data();
    void isRunMaximised();
};

void TestWindow::beginsAtItsDesignedSize()
{
    PropertyDialogCase test(s_twoPorts);
    const gui::PropertyDialog& dialog = test.construct();
    QCOMPARE(dialog.size(), QSize(697, 348));
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    QVERIFY((dialog.geometry().center() - screen.center()).manhattanLength() <= 2);
    QVERIFY(!dialog.isMaximized());
    QVERIFY(!dialog.isVisible());
}

void TestWindow::showsEveryTextWhole_data()
{
    QTest::addColumn<double>("fontSize");
    QTest::addColumn<int>("tab");
    QTest::newRow("serial ports") << 1.0 << 0;
    QTest::newRow("provider") << 1.0 << 1;
    QTest::newRow("serial ports, twice the font") << 2.0 << 0;
    QTest::newRow("provider, twice the font") << 2.0 << 1;
}

void TestWindow::showsEveryTextWhole()
{
    QFETCH(const double, fontSize);
    QFETCH(const int, tab);
    const FontSize font(fontSize);
    PropertyDialogCase test(s_twoPorts);
    test.open();
    test.widget<QTabWidget>("tabWidget").setCurrentIndex(tab);
    QCoreApplication::processEvents();
    QCOMPARE(lacks(test.dialog()), QStringList());
    // Nor when the user makes it as small as it goes.
    test.dialog().resize(1, 1);
    QCoreApplication::processEvents();
    QCOMPARE(lacks(test.dialog()), QStringList());
}

void TestWindow::longPortNamesDoNotWidenIt()
{
    PropertyDialogCase usual(s_twoPorts);
    const QSize size = usual.open().size();
    PropertyDialogCase test("resource ASRL" + std::string(250, 'W') + " interface=ASRL,1\n");
    QCOMPARE(test.open().size(), size);
}

void TestWindow::remembersSizeAndPlace()
{
    PropertyDialogCase test(s_twoPorts);
    store("size", QSize(780, 620));
    store("pos", QPoint(12, 34));
    test.open();
    QCOMPARE(test.dialog().size(), QSize(780, 620));
    QCOMPARE(test.dialog().pos(), QPoint(12, 34));
}

void TestWindow::writesItsSettingsWhenDestroyed()
{
    PropertyDialogCase test(s_twoPorts);
    test.open();
    test.dialog().resize(790, 630);
    test.dialog().move(21, 43);
    test.widget<QTabWidget>("tabWidget").setCurrentIndex(1);
    test.clickOk();
    QVERIFY(QSettings().allKeys().isEmpty());
    test.destroy();
    QCOMPARE(QSettings().allKeys(),
             QStringList({key("fullscreen"), key("pos"), key("size"), key("tabindex")}));
    QCOMPARE(stored("size").toSize(), QSize(790, 630));
    QCOMPARE(stored("pos").toPoint(), QPoint(21, 43));
    QCOMPARE(stored("tabindex").toInt(), 1);
    QVERIFY(!stored("fullscreen").toBool());
}

void TestWindow::opensOnTheStoredTab_data()
{
    QTest::addColumn<QVariant>("index");
    QTest::addColumn<QString>("tab");
    const QString ports = QStringLiteral("tabAsrlProperties");
    const QString provider = QStringLiteral("tabSpecialProperties");
    // The index counts four tabs; of those that go, the next one takes the place.
    QTest::newRow("none") << QVariant() << ports;
    QTest::newRow("the conflict manager's") << QVariant(0) << ports;
    QTest::newRow("the ports'") << QVariant(1) << ports;
    QTest::newRow("the boards'") << QVariant(2) << provider;
    QTest::newRow("the provider's") << QVariant(3) << provider;
    QTest::newRow("one that is not there") << QVariant(4) << ports;
    QTest::newRow("below zero") << QVariant(-1) << ports;
    QTest::newRow("no number") << QVariant(QStringLiteral("x")) << ports;
}

void TestWindow::opensOnTheStoredTab()
{
    QFETCH(const QVariant, index);
    QFETCH(const QString, tab);
    PropertyDialogCase test(s_twoPorts);
    if (index.isValid()) {
        store("tabindex", index);
    }
    test.open();
    QCOMPARE(currentTab(test), tab);
    QVERIFY(test.widget<QWidget>(tab.toLatin1().constData()).isVisible());
}

void TestWindow::comesBackToTheSerialPorts()
{
    PropertyDialogCase test(s_twoPorts);
    test.open();
    test.widget<QTabWidget>("tabWidget").setCurrentIndex(1);
    QCOMPARE(currentTab(test), QStringLiteral("tabSpecialProperties"));
    test.clickCancel();
    test.open();
    QCOMPARE(stored("tabindex").toInt(), 1);
    QCOMPARE(currentTab(test), QStringLiteral("tabAsrlProperties"));
}

void TestWindow::isModalWhenItOpensMaximised()
{
    QWidget other;
    other.show();
    PropertyDialogCase test(s_twoPorts);
    store("fullscreen", true);
    const gui::PropertyDialog& dialog = test.construct();
    QVERIFY(dialog.isVisible());
    QVERIFY(dialog.isMaximized());
    QCOMPARE(QGuiApplication::modalWindow(), dialog.windowHandle());
    QCOMPARE(QApplication::activeModalWidget(), &dialog);
    QVERIFY(!test.widget<QWidget>("tabConfMang").isVisible());
    QVERIFY(!test.widget<QWidget>("tabGpibProperties").isVisible());
    QVERIFY(!test.widget<QWidget>("groupBoxOs").isVisible());
    QVERIFY(test.widget<QWidget>("tabAsrlProperties").isVisible());
    test.destroy();
    QVERIFY(stored("fullscreen").toBool());
}

void TestWindow::isRunMaximised_data()
{
    QTest::addColumn<bool>("isAccepted");
    QTest::newRow("OK") << true;
    QTest::newRow("Cancel") << false;
}

void TestWindow::isRunMaximised()
{
    QFETCH(const bool, isAccepted);
    PropertyDialogCase test(s_twoPorts);
    store("fullscreen", true);
    gui::PropertyDialog& dialog = test.construct();
    const support::ModalAnswer<gui::PropertyDialog> answer([&test, isAccepted](auto&) {
        test.click(isAccepted ? QDialogButtonBox::Ok : QDialogButtonBox::Cancel);
    });
    QCOMPARE(dialog.exec(), int(isAccepted ? QDialog::Accepted : QDialog::Rejected));
    QVERIFY(answer.wasShown());
    QVERIFY(!dialog.isVisible());
    QCOMPARE(QGuiApplication::modalWindow(), static_cast<QWindow*>(nullptr));
}

static const guitest::Registration<TestWindow> s_registration;

#include "TestWindow.moc"
