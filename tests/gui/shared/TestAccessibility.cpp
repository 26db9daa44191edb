// SPDX-License-Identifier: MIT
// The names that a screen reader gets for the windows' controls.
#include "tests/gui/main_window/MainWindowCase.h"
#include "tests/gui/property_dialog/PropertyDialogCase.h"
#include "tests/gui/resource_dialog/ResourceDialogCase.h"
#include "tests/gui/rsrc_string_editor/ComposerCase.h"
#include "tests/gui/shared/WindowTest.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QGroupBox>
#include <QLabel>

#include <algorithm>

using guitest::ComposerCase;
using guitest::MainWindowCase;
using guitest::PropertyDialogCase;
using guitest::ResourceDialogCase;

namespace {

bool isControl(QAccessible::Role role)
{
    switch (role) {
    case QAccessible::EditableText:
    case QAccessible::ComboBox:
    case QAccessible::List:
    case QAccessible::Table:
    case QAccessible::Tree:
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::SpinBox:
    case QAccessible::Slider:
    case QAccessible::Button:
    case QAccessible::ButtonDropDown:
    case QAccessible::ButtonMenu:
        return true;
    default:
        return false;
    }
}

/// A control of the accessibility tree.
struct Control
{
    const QWidget* widget;
    QString name;
};

bool isControlWidget(const QWidget& widget)
{
    return widget.inherits("QLineEdit") || widget.inherits("QComboBox") ||
           widget.inherits("QAbstractSpinBox") || widget.inherits("QAbstractSlider") ||
           qobject_cast<const QAbstractButton*>(&widget) != nullptr ||
           qobject_cast<const QAbstractItemView*>(&widget) != nullptr;
}

bool isPartOfControl(const QWidget& widget)
{
    const QWidget* parent = widget.parentWidget();
    return parent != nullptr && (isControlWidget(*parent) || isPartOfControl(*parent));
}

/// Whether the label is a group of several controls: its title names none of them.
bool isGroupOfMany(const QAccessibleInterface& label)
{
    const auto* group = qobject_cast<const QGroupBox*>(label.object());
    if (group == nullptr) {
        return false;
    }
    const QList<QWidget*> parts = group->findChildren<QWidget*>();
    return std::count_if(parts.begin(), parts.end(), [](const QWidget* part) {
               return isControlWidget(*part) && !isPartOfControl(*part);
           }) > 1;
}

/// The name of a control. For a combo box on Linux that is its choice, and its labels name it.
QString nameOf(const QAccessibleInterface& control)
{
    if (control.role() != QAccessible::ComboBox) {
        return control.text(QAccessible::Name);
    }
    const auto relations = control.relations(QAccessible::Label);
    if (std::all_of(relations.begin(), relations.end(),
                    [](const auto& relation) { return isGroupOfMany(*relation.first); })) {
        return {};
    }
    QStringList labels;
    for (const auto& [label, relation] : relations) {
        labels.append(label->text(QAccessible::Name));
    }
    return labels.join(QLatin1String(" of "));
}

/// The controls below a node of the accessibility tree, without the parts of a list or a box and
/// without the parts that Qt adds and names, or hides.
void collect(const QAccessibleInterface* node, QList<Control>& controls)
{
    const auto* widget = qobject_cast<const QWidget*>(node->object());
    if (widget != nullptr && isControl(node->role())) {
        if (!widget->objectName().startsWith(QLatin1String("qt_"))) {
            controls.append({widget, nameOf(*node)});
        }
        return;
    }
    for (int i = 0; i < node->childCount(); ++i) {
        if (const QAccessibleInterface* child = node->child(i)) {
            collect(child, controls);
        }
    }
}

QString describe(const QWidget& widget)
{
    return QString::fromLatin1(widget.metaObject()->className()) + QLatin1Char(' ') +
           widget.objectName();
}

/// Every control of the window, on hidden pages and in hidden groups too, is in the accessibility
/// tree with a name that has letters and that no other control has.
void expectNames(const QWidget& window, int count)
{
    QList<Control> controls;
    collect(QAccessible::queryAccessibleInterface(const_cast<QWidget*>(&window)), controls);
    QStringList names;
    for (const Control& control : controls) {
        QVERIFY2(std::any_of(control.name.begin(), control.name.end(),
                             [](QChar c) { return c.isLetter(); }),
                 qPrintable(describe(*control.widget) + QLatin1String(" is named '") +
                            control.name + QLatin1Char('\'')));
        QVERIFY2(!names.contains(control.name),
                 qPrintable(QLatin1String("two are named ") + control.name));
        names.append(control.name);
    }
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        const bool isOurs = widget->window() == &window && isControlWidget(*widget) &&
                            !isPartOfControl(*widget) &&
                            !widget->objectName().startsWith(QLatin1String("qt_"));
        if (isOurs && !widget->inherits("QScrollBar")) {
            QVERIFY2(
                std::any_of(controls.begin(), controls.end(),
                            [widget](const Control& control) { return control.widget == widget; }),
                qPrintable(describe(*widget) + QLatin1String(" is not in the tree")));
        }
    }
    QCOMPARE(controls.size(), count);
}

} // namespace

class TestAccessibility : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void mainWindow();
    void cellEditor();
    void composer_data();
    void composer();
    void findDialog();
    void propertiesDialog();
    void groupsAreNamedByTheirTitles();
    void buttonsAreNamedByTheirTexts();
    void namesDoNotRepeatLabels();
};

void TestAccessibility::mainWindow()
{
    MainWindowCase test(configuration(), "DMM=GPIB0::1::INSTR\n");
    test.show();
    // The table and seven buttons.
    expectNames(test.window(), 8);
}

void TestAccessibility::cellEditor()
{
    MainWindowCase test(configuration(), "DMM=GPIB0::1::INSTR\n");
    test.show();
    test.typeIntoCell(0, ConfigurationModel::AliasColumn, "A");
    QCOMPARE(QAccessible::queryAccessibleInterface(test.cellEditor())->text(QAccessible::Name),
             QStringLiteral("Alias"));
    QTest::keyClick(test.cellEditor(), Qt::Key_Escape);
    QTRY_VERIFY(test.cellEditor() == nullptr);
    test.typeIntoCell(0, ConfigurationModel::ResourceColumn, "A");
    QCOMPARE(QAccessible::queryAccessibleInterface(test.cellEditor())->text(QAccessible::Name),
             QStringLiteral("Resource identifier"));
}

void TestAccessibility::composer_data()
{
    QTest::addColumn<int>("type");
    const ComposerCase test;
    for (int type = 0; type < test.types().count(); ++type) {
        QTest::newRow(qPrintable(test.types().itemText(type))) << type;
    }
}

void TestAccessibility::composer()
{
    QFETCH(const int, type);
    ComposerCase test;
    test.choose(type);
    // Ten line edits, the list of types, the search, OK and Cancel.
    expectNames(test.editor(), 14);
}

void TestAccessibility::findDialog()
{
    ResourceDialogCase test;
    test.show();
    // The list, Refresh, Select and Cancel.
    expectNames(test.dialog(), 4);
}

void TestAccessibility::propertiesDialog()
{
    PropertyDialogCase test("resource ASRL1::INSTR\n");
    test.haveBoards({{0, {}}});
    test.open();
    // Back with the pages that this platform does not show.
    test.showTab("tabConfMang");
    test.showTab("tabGpibProperties");
    // The form's 21 inputs, OK and Cancel, and the buttons that scroll the tabs.
    expectNames(test.dialog(), 25);
}

void TestAccessibility::groupsAreNamedByTheirTitles()
{
    ComposerCase composer;
    PropertyDialogCase properties("resource ASRL1::INSTR\n");
    properties.open();
    const QList<QGroupBox*> groups = composer.editor().findChildren<QGroupBox*>() +
                                     properties.dialog().findChildren<QGroupBox*>();
    QCOMPARE(groups.size(), 8);
    for (QGroupBox* group : groups) {
        QCOMPARE(QAccessible::queryAccessibleInterface(group)->text(QAccessible::Name),
                 group->title());
    }
}

/// Who says what is written on a button, by voice control, must reach it.
void TestAccessibility::buttonsAreNamedByTheirTexts()
{
    PropertyDialogCase test("resource ASRL1::INSTR\n");
    test.open();
    for (const char* name : {"btnDefaultOs", "btnDefaultQv"}) {
        auto& button = test.widget<QPushButton>(name);
        QVERIFY(QAccessible::queryAccessibleInterface(&button)
                    ->text(QAccessible::Name)
                    .startsWith(button.text()));
    }
}

/// A label with a buddy names the buddy; a name of its own would be read as well.
void TestAccessibility::namesDoNotRepeatLabels()
{
    ComposerCase composer;
    PropertyDialogCase properties("resource ASRL1::INSTR\n");
    properties.open();
    const QList<QLabel*> labels =
        composer.editor().findChildren<QLabel*>() + properties.dialog().findChildren<QLabel*>();
    int buddies = 0;
    for (const QLabel* label : labels) {
        if (label->buddy() != nullptr) {
            ++buddies;
            QVERIFY2(label->buddy()->accessibleName() != label->text(), qPrintable(label->text()));
        }
    }
    QCOMPARE(buddies, 23);
}

static const guitest::Registration<TestAccessibility> s_registration;
#include "TestAccessibility.moc"
