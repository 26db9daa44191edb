// SPDX-License-Identifier: MIT
// The names that a screen reader gets for the windows' controls.
#include "gui/MainWindow.h"
#include "gui/PropertyDialog.h"
#include "gui/ResourceDialog.h"
#include "gui/RsrcStringEditor.h"
#include "tests/gui/common/WindowTest.h"
#include "tests/support/Children.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTabWidget>

#include <algorithm>
#include <memory>

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
    void everyControlOfTheMainWindowHasAName()
    {
        gui::MainWindow window(nullptr);
        window.show();
        // The table and seven buttons.
        expectNames(window, 8);
    }

    void cellEditorHasTheNameOfItsColumn()
    {
        for (const int column : {0, 1}) {
            gui::MainWindow window(nullptr);
            window.show();
            auto& table = support::child<QTableView>(window, "resourceView");
            table.edit(table.model()->index(0, column));
            auto* editor = table.viewport()->findChild<QLineEdit*>();
            QVERIFY(editor != nullptr);
            QCOMPARE(accessibleName(editor),
                     QString::fromLatin1(column == 0 ? "Resource identifier" : "Alias"));
        }
    }

    void everyControlOfTheComposerHasAName()
    {
        auto& types = support::child<QComboBox>(*m_composer, "IfcComboBox");
        for (int type = 0; type < types.count(); ++type) {
            types.setCurrentIndex(type);
            // Ten line edits, the list of types, the search, OK and Cancel.
            expectNames(*m_composer, 14);
        }
    }

    void everyControlOfTheFindDialogHasAName()
    {
        gui::ResourceDialog dialog(nullptr);
        dialog.show();
        // The list, Refresh, Select and Cancel.
        expectNames(dialog, 4);
    }

    void everyControlOfThePropertiesDialogHasAName()
    {
        // With the pages that this platform does not show.
        auto& tabs = support::child<QTabWidget>(*m_properties, "tabWidget");
        for (const char* page : {"tabConfMang", "tabGpibProperties"}) {
            tabs.addTab(&support::child<QWidget>(*m_properties, page), QString::fromLatin1(page));
            tabs.setCurrentIndex(tabs.count() - 1);
        }
        // The form's 21 inputs, OK and Cancel, and the buttons that scroll the tabs.
        expectNames(*m_properties, 25);
    }

    void groupsAreNamedByTheirTitles()
    {
        const auto groups = inBothDialogs<QGroupBox>();
        QCOMPARE(groups.size(), 8);
        for (QGroupBox* group : groups) {
            QCOMPARE(accessibleName(group), group->title());
        }
    }

    /// Voice control finds a button by its text.
    void buttonNamesStartWithTheirTexts()
    {
        for (const char* name : {"btnDefaultOs", "btnDefaultQv"}) {
            auto& button = support::child<QPushButton>(*m_properties, name);
            QVERIFY(accessibleName(&button).startsWith(button.text()));
        }
    }

    /// A label with a buddy names the buddy; a name of its own would be read as well.
    void namesDoNotRepeatLabels()
    {
        int buddies = 0;
        for (const QLabel* label : inBothDialogs<QLabel>()) {
            if (label->buddy() != nullptr) {
                ++buddies;
                QVERIFY2(label->buddy()->accessibleName() != label->text(),
                         qPrintable(label->text()));
            }
        }
        QCOMPARE(buddies, 23);
    }

private:
    void setUp() override
    {
        configuration().write("DMM=GPIB0::1::INSTR\n");
        bench().write("resource ASRL1::INSTR\n");
        m_model = std::make_unique<ConfigurationModel>(nullptr);
        m_model->setGpibProperties({{0, {}}});
        m_properties = std::make_unique<gui::PropertyDialog>(*m_model, nullptr);
        m_properties->show();
        m_composer = std::make_unique<gui::RsrcStringEditor>(nullptr);
        m_composer->show();
    }
    void tearDown() override
    {
        m_composer.reset();
        m_properties.reset();
        m_model.reset();
    }
    template <typename Widget>
    QList<Widget*> inBothDialogs() const
    {
        return m_composer->findChildren<Widget*>() + m_properties->findChildren<Widget*>();
    }
    static QString accessibleName(QWidget* widget)
    {
        return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
    }

    std::unique_ptr<ConfigurationModel> m_model;
    std::unique_ptr<gui::PropertyDialog> m_properties;
    std::unique_ptr<gui::RsrcStringEditor> m_composer;
};

static const guitest::Registration<TestAccessibility> s_registerAccessibility;
#include "TestAccessibility.moc"
