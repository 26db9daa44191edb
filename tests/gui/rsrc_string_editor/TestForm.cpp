// SPDX-License-Identifier: MIT
// The composer as a form: what stands where, how much room it has, how the keyboard goes through.
#include "tests/gui/rsrc_string_editor/ComposerCase.h"
#include "tests/gui/shared/FontSize.h"
#include "tests/gui/shared/WindowTest.h"

#include <QDialogButtonBox>
#include <QGroupBox>
#include <QIcon>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QToolButton>

#include <algorithm>
#include <optional>
#include <tuple>

using guitest::ComposerCase;

namespace {

/// The layout and all beneath it: "name(item item)", "|" for a spacer.
QString tree(const QLayout& layout)
{
    QStringList items;
    for (int i = 0; i < layout.count(); ++i) {
        QLayoutItem& item = *layout.itemAt(i);
        if (item.spacerItem() != nullptr) {
            items.append(item.expandingDirections() == Qt::Vertical ? QStringLiteral("|")
                                                                    : QStringLiteral("-"));
        } else if (item.layout() != nullptr) {
            items.append(tree(*item.layout()));
        } else if (qobject_cast<QGroupBox*>(item.widget()) != nullptr) {
            items.append(item.widget()->objectName() + QLatin1Char(':') +
                         tree(*item.widget()->layout()));
        } else {
            items.append(item.widget()->objectName());
        }
    }
    return layout.objectName() + QLatin1Char('(') + items.join(QLatin1Char(' ')) + QLatin1Char(')');
}

/// The widgets that a label, a field or a button of the form shows now.
QList<QWidget*> shownParts(const QWidget& window)
{
    QList<QWidget*> parts;
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        const bool isPart = qobject_cast<QLabel*>(widget) != nullptr ||
                            qobject_cast<QLineEdit*>(widget) != nullptr ||
                            qobject_cast<QComboBox*>(widget) != nullptr ||
                            qobject_cast<QAbstractButton*>(widget) != nullptr;
        if (isPart && widget->isVisible()) {
            parts.append(widget);
        }
    }
    return parts;
}

QString nameOf(const QWidget& widget)
{
    const auto* button = qobject_cast<const QPushButton*>(&widget);
    return button != nullptr ? button->text().remove(QLatin1Char('&')) : widget.objectName();
}

/// Three columns or rows one after the other, each read from top to bottom, left to right.
auto readingOrder(const ComposerCase& composer, const QWidget& widget)
{
    const int part = composer.widget<QGroupBox>("groupBox").isAncestorOf(&widget)     ? 0
                     : composer.widget<QGroupBox>("groupBox_2").isAncestorOf(&widget) ? 1
                                                                                      : 2;
    const QPoint centre = widget.mapTo(widget.window(), widget.rect().center());
    return std::make_tuple(part, centre.y(), centre.x());
}

} // namespace

class TestForm : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void hasTitleIconAndSize();
    void hasItsWidgetsInOrder();
    void hasItsTexts_data();
    void hasItsTexts();
    void hasKinds();
    void labelsNameTheirFields();
    void inputsHaveAccessibleNames();
    void startsAtTheAlias();
    void tabulatorFollowsTheEye_data() { eachInterface(); }
    void tabulatorFollowsTheEye();
    void hasRoomForEverything_data();
    void hasRoomForEverything();
    void showsALongResourceWhole();
    void hiddenPartsLeaveNoHoles_data() { eachInterface(); }
    void hiddenPartsLeaveNoHoles();

private:
    static void eachInterface();
};

void TestForm::eachInterface()
{
    QTest::addColumn<int>("type");
    const ComposerCase composer;
    for (int type = 0; type < composer.types().count(); ++type) {
        QTest::newRow(qPrintable(composer.types().itemText(type))) << type;
    }
}

void TestForm::hasTitleIconAndSize()
{
    ComposerCase composer;
    const QWidget& window = composer.editor();
    QCOMPARE(window.objectName(), QStringLiteral("RsrcStringEditor"));
    QCOMPARE(window.windowTitle(), QStringLiteral("VISA Resource String Composer"));
    QCOMPARE(window.size(), QSize(740, 595));
    QCOMPARE(window.windowIcon().pixmap(32).toImage(),
             QIcon(QStringLiteral(":/icons/Neu_transp4d09c92bc222a.ico")).pixmap(32).toImage());
    QVERIFY(!window.windowIcon().pixmap(32).isNull());
    QVERIFY(!window.windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
}

void TestForm::hasItsWidgetsInOrder()
{
    ComposerCase composer;
    QCOMPARE(tree(*composer.editor().layout()),
             QStringLiteral(
                 "verticalLayout("
                 "horizontalLayout("
                 "groupBox:verticalLayout_3(label aliasEdit label_2 "
                 "horizontalLayout_2(RsrcEdit FindRsrcButton) |) "
                 "groupBox_2:verticalLayout_2(label_3 IfcComboBox label_4 BoardEdit "
                 "TcpipGroupBox:verticalLayout_4(label_5 IpEdit deviceLabel deviceEdit portLabel "
                 "PortEdit) "
                 "UsbGroupBox:verticalLayout_5(label_6 vendorEdit label_8 productEdit label_7 "
                 "serialEdit) "
                 "GpibGroupBox:verticalLayout_6(label_9 PrimaryEdit) |)) "
                 "buttonBox)"));
}

void TestForm::hasItsTexts_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QString>("text");
    const auto row = [](const char* name, const char* property, const char* text) {
        QTest::addRow("%s %s", name, property)
            << QString::fromLatin1(name) << QByteArray(property) << QString::fromLatin1(text);
    };
    row("groupBox", "title", "Resource String");
    row("label", "text", "Alias");
    row("label_2", "text", "VISA Resource String");
    row("FindRsrcButton", "text", "...");
    row("FindRsrcButton", "toolTip", "Find Resources");
    row("groupBox_2", "title", "Build Interface");
    row("label_3", "text", "Interface Type");
    row("label_4", "text", "Board Number");
    row("TcpipGroupBox", "title", "TCP/IP");
    row("label_5", "text", "Device IP Address or hostname");
    row("deviceLabel", "text", "Device ID");
    row("portLabel", "text", "Port");
    row("UsbGroupBox", "title", "USB");
    row("label_6", "text", "Vendor ID");
    row("label_8", "text", "Product ID");
    row("label_7", "text", "Device Serial No.");
    row("GpibGroupBox", "title", "GPIB");
    row("label_9", "text", "Primary Address");
}

void TestForm::hasItsTexts()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, property);
    const ComposerCase composer;
    const auto& widget = composer.widget<QWidget>(name.toLatin1().constData());
    QTEST(widget.property(property.constData()).toString(), "text");
}

void TestForm::hasKinds()
{
    const ComposerCase composer;
    const auto& find = composer.widget<QToolButton>("FindRsrcButton");
    QCOMPARE(find.icon().pixmap(16).toImage(),
             QIcon(QStringLiteral(":/icons/Suchen_tra4d09cbe82cb7b.ico")).pixmap(16).toImage());
    QVERIFY(!find.icon().pixmap(16).isNull());
    const auto& box = composer.widget<QDialogButtonBox>("buttonBox");
    QCOMPARE(box.orientation(), Qt::Horizontal);
    QCOMPARE(box.standardButtons(), QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QVERIFY(box.button(QDialogButtonBox::Ok)->isDefault());
}

/// A label stands directly above the field that it names.
void TestForm::labelsNameTheirFields()
{
    ComposerCase composer;
    const QList<QLabel*> labels = composer.editor().findChildren<QLabel*>();
    QCOMPARE(labels.size(), 11);
    QStringList named;
    for (const QLabel* label : labels) {
        QVERIFY2(label->buddy() != nullptr, qPrintable(label->objectName()));
        QCOMPARE(label->buddy()->accessibleName(), label->text());
        named.append(label->objectName() + QLatin1Char('>') + label->buddy()->objectName());
    }
    named.sort();
    QCOMPARE(named.join(QLatin1Char(' ')),
             QStringLiteral("deviceLabel>deviceEdit label>aliasEdit label_2>RsrcEdit "
                            "label_3>IfcComboBox label_4>BoardEdit label_5>IpEdit "
                            "label_6>vendorEdit label_7>serialEdit label_8>productEdit "
                            "label_9>PrimaryEdit portLabel>PortEdit"));
}

void TestForm::inputsHaveAccessibleNames()
{
    ComposerCase composer;
    int inputs = 0;
    for (const QWidget* widget : composer.editor().findChildren<QWidget*>()) {
        const bool isInput = qobject_cast<const QLineEdit*>(widget) != nullptr ||
                             qobject_cast<const QComboBox*>(widget) != nullptr ||
                             qobject_cast<const QToolButton*>(widget) != nullptr;
        // The list that the combo box opens is its own affair.
        if (isInput && widget->window() == &composer.editor()) {
            ++inputs;
            QVERIFY2(!widget->accessibleName().isEmpty(), qPrintable(widget->objectName()));
        }
    }
    QCOMPARE(inputs, 12);
}

void TestForm::startsAtTheAlias()
{
    const ComposerCase composer;
    QTRY_COMPARE(QApplication::focusWidget(), &composer.edit("aliasEdit"));
}

void TestForm::tabulatorFollowsTheEye()
{
    QFETCH(const int, type);
    ComposerCase composer;
    composer.choose(type);
    QList<QWidget*> expected;
    for (QWidget* part : shownParts(composer.editor())) {
        if ((part->focusPolicy() & Qt::TabFocus) != 0 && part->isEnabled()) {
            expected.append(part);
        }
    }
    std::sort(expected.begin(), expected.end(),
              [&composer](const QWidget* left, const QWidget* right) {
                  return readingOrder(composer, *left) < readingOrder(composer, *right);
              });
    QStringList expectedNames;
    for (const QWidget* widget : expected) {
        expectedNames.append(nameOf(*widget));
    }

    composer.edit("aliasEdit").setFocus();
    QStringList names;
    do {
        names.append(nameOf(*QApplication::focusWidget()));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    } while (QApplication::focusWidget() != &composer.edit("aliasEdit") &&
             names.size() <= expectedNames.size());
    QCOMPARE(names.join(QLatin1Char(' ')), expectedNames.join(QLatin1Char(' ')));
    QVERIFY(names.size() >= 7);
}

void TestForm::hasRoomForEverything_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("pixels");
    const ComposerCase composer;
    for (int type = 0; type < composer.types().count(); ++type) {
        // What desktops have, and half as much again.
        for (const int pixels : {13, 20}) {
            QTest::addRow("%s %d", qPrintable(composer.types().itemText(type)), pixels)
                << type << pixels;
        }
    }
}

/// At its first size the window cuts nothing off, in the common font size and in a larger one.
void TestForm::hasRoomForEverything()
{
    QFETCH(const int, type);
    QFETCH(const int, pixels);
    const guitest::FontSize fontSize(pixels);
    ComposerCase composer;
    composer.choose(type);
    QCoreApplication::processEvents();

    QWidget& window = composer.editor();
    QCOMPARE(window.size(), QSize(740, 595));
    const QList<QWidget*> parts = shownParts(window);
    QVERIFY(parts.size() >= 11);
    for (const QWidget* part : parts) {
        const QSize needed = part->sizeHint();
        QVERIFY2(part->width() >= needed.width() && part->height() >= needed.height(),
                 qPrintable(QStringLiteral("%1 has %2x%3, needs %4x%5")
                                .arg(nameOf(*part))
                                .arg(part->width())
                                .arg(part->height())
                                .arg(needed.width())
                                .arg(needed.height())));
        const QRect place(part->mapTo(&window, QPoint()), part->size());
        QVERIFY2(window.rect().contains(place), qPrintable(nameOf(*part)));
        for (const QWidget* other : parts) {
            const QRect otherPlace(other->mapTo(&window, QPoint()), other->size());
            QVERIFY2(part == other || !place.intersects(otherPlace),
                     qPrintable(nameOf(*part) + QLatin1Char(' ') + nameOf(*other)));
        }
    }
}

void TestForm::showsALongResourceWhole()
{
    const guitest::FontSize fontSize(13);
    ComposerCase composer;
    const QString resource = QStringLiteral("TCPIP0::scope3.laboratory.lan::hislip0,4881::INSTR");
    composer.editor().setRsrcString(resource);
    QCoreApplication::processEvents();
    const QLineEdit& edit = composer.edit("RsrcEdit");
    QVERIFY(edit.fontMetrics().horizontalAdvance(resource) < edit.width());
}

/// What is shown follows closely, whatever is hidden between.
void TestForm::hiddenPartsLeaveNoHoles()
{
    QFETCH(const int, type);
    const ComposerCase composer;
    composer.choose(type);
    QCoreApplication::processEvents();
    for (const char* name : {"groupBox", "groupBox_2", "TcpipGroupBox", "UsbGroupBox"}) {
        const auto& group = composer.widget<QGroupBox>(name);
        if (!group.isVisible()) {
            continue;
        }
        const QLayout& layout = *group.layout();
        int bottom =
            group.contentsRect().top() + layout.contentsMargins().top() - layout.spacing() - 1;
        for (int i = 0; i < layout.count(); ++i) {
            QLayoutItem& item = *layout.itemAt(i);
            const bool isShown =
                item.widget() != nullptr ? item.widget()->isVisible() : !item.isEmpty();
            if (isShown) {
                QCOMPARE(item.geometry().top() - bottom - 1, layout.spacing());
                bottom = item.geometry().bottom();
            }
        }
    }
}

static const guitest::Registration<TestForm> s_registration;
#include "TestForm.moc"
