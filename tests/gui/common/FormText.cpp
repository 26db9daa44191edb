// SPDX-License-Identifier: MIT
#include "tests/gui/common/FormText.h"

#include "tests/support/Files.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QGroupBox>
#include <QKeySequence>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QMainWindow>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QPushButton>
#include <QRegularExpression>
#include <QRegularExpressionValidator>
#include <QSize>
#include <QTabBar>
#include <QTableWidget>
#include <QTabWidget>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>

#include <algorithm>
#include <map>
#include <memory>
#include <vector>

namespace guitest {

namespace {

QString quoted(QString text)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    text.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    return QLatin1Char('"') + text + QLatin1Char('"');
}

/// The texts of 0 to count - 1, separated by blanks.
template <typename Text>
QString joined(int count, Text text)
{
    QStringList texts;
    for (int index = 0; index < count; ++index) {
        texts.append(text(index));
    }
    return texts.join(QLatin1Char(' '));
}

/// The name of the compiled-in file that the icon shows, without its suffix.
QString iconName(const QIcon& icon)
{
    const auto picture = [](const QIcon& shown) {
        return shown.pixmap(32).toImage().convertToFormat(QImage::Format_ARGB32);
    };
    const QDir folder(QStringLiteral(":/icons"));
    for (const QFileInfo& file : folder.entryInfoList()) {
        if (picture(QIcon(file.filePath())) == picture(icon)) {
            return file.baseName();
        }
    }
    return QStringLiteral("unknown");
}

/// Empty for a type that is not printed.
QString valueText(const QMetaProperty& property, const QVariant& value)
{
    if (property.isEnumType()) {
        return QString::fromLatin1(property.enumerator().valueToKeys(value.toInt()));
    }
    switch (value.userType()) {
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("yes") : QStringLiteral("no");
    case QMetaType::Int:
    case QMetaType::UInt:
        return value.toString();
    case QMetaType::QString:
        return quoted(value.toString());
    case QMetaType::QKeySequence:
        return value.value<QKeySequence>().toString();
    case QMetaType::QLocale:
        return value.toLocale().name();
    case QMetaType::QIcon:
        return iconName(value.value<QIcon>());
    case QMetaType::QSize:
        // All other sizes follow from the font.
        return qstrcmp(property.name(), "iconSize") == 0 ? QStringLiteral("%1x%2")
                                                               .arg(value.toSize().width())
                                                               .arg(value.toSize().height())
                                                         : QString();
    default:
        return {};
    }
}

using PlainObjects = std::map<const QMetaObject*, std::unique_ptr<QObject>>;

template <typename... Types>
PlainObjects newObjects()
{
    PlainObjects objects;
    ((objects[&Types::staticMetaObject] = std::make_unique<Types>()), ...);
    return objects;
}

class Printer
{
public:
    explicit Printer(const QWidget& window);

    QString text() const { return m_lines.join(QLatin1Char('\n')) + QLatin1Char('\n'); }

private:
    void add(int depth, const QString& line)
    {
        m_lines.append(QString(2 * depth, QLatin1Char(' ')) + line);
    }
    QString describe(const QObject& object) const;
    QString properties(const QObject& object) const;
    QString details(const QObject& object) const;
    QString tabPosition(const QWidget& widget) const;

    void addLayout(int depth, const QLayout& layout);
    void addWidget(int depth, const QWidget& widget);
    void addPages(int depth, const QTabWidget& tabs);
    void addContents(int depth, const QWidget& widget);

    QStringList m_lines;
    /// New objects to compare with, by class.
    PlainObjects m_plain;
    /// The widgets that the Tab key visits, in order.
    std::vector<const QWidget*> m_tabOrder;
};

Printer::Printer(const QWidget& window)
    : m_plain(newObjects<QAction, QCheckBox, QComboBox, QDialog, QDialogButtonBox, QGroupBox,
                         QLabel, QLineEdit, QListWidget, QMainWindow, QPushButton, QTabWidget,
                         QTableView, QTableWidget, QToolBar, QToolButton, QTreeWidget, QWidget>())
{
    for (const QWidget* widget = window.nextInFocusChain(); widget != &window;
         widget = widget->nextInFocusChain()) {
        const QString name = widget->objectName();
        const bool isOfAForm = !name.isEmpty() && !name.startsWith(QLatin1String("qt_")) &&
                               qobject_cast<const QTabBar*>(widget->parent()) == nullptr;
        const bool isOkOrCancel =
            qobject_cast<const QDialogButtonBox*>(widget->parent()) != nullptr;
        if ((widget->focusPolicy() & Qt::TabFocus) != 0 && (isOfAForm || isOkOrCancel)) {
            m_tabOrder.push_back(widget);
        }
    }
    const bool hasHelp = window.windowFlags().testFlag(Qt::WindowContextHelpButtonHint);
    add(0, describe(window) + QLatin1String(hasHelp ? " context help button" : ""));
    const QMetaObject& meta = *window.metaObject();
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        if (meta.method(index).methodType() == QMetaMethod::Slot) {
            add(1,
                QLatin1String("slot ") + QString::fromLatin1(meta.method(index).methodSignature()));
        }
    }
    for (const QAction* action :
         window.findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly)) {
        add(1, describe(*action));
    }
    addContents(1, window);
}

QString Printer::properties(const QObject& object) const
{
    const QMetaObject* meta = object.metaObject();
    auto plain = m_plain.find(meta);
    while (plain == m_plain.end()) {
        meta = meta->superClass();
        plain = m_plain.find(meta);
    }
    // What a window or a text implies, or what differs from one desktop to the next.
    static const QStringList s_implied{
        QStringLiteral("objectName"),     QStringLiteral("windowIconText"),
        QStringLiteral("iconText"),       QStringLiteral("whatsThis"),
        QStringLiteral("currentText"),    QStringLiteral("currentRow"),
        QStringLiteral("cursorPosition"), QStringLiteral("currentIndex"),
        QStringLiteral("mouseTracking"),  QStringLiteral("visible"),
        QStringLiteral("updatesEnabled")};
    QString text;
    for (int index = 0; index < meta->propertyCount(); ++index) {
        const QMetaProperty property = meta->property(index);
        const QString name = QString::fromLatin1(property.name());
        const bool isInherited = name == QLatin1String("windowIcon") && object.parent() != nullptr;
        if (!property.isWritable() || !property.isStored() || s_implied.contains(name) ||
            isInherited) {
            continue;
        }
        const QString value = valueText(property, property.read(&object));
        if (!value.isEmpty() && value != valueText(property, property.read(plain->second.get()))) {
            text += QLatin1Char(' ') + name + QLatin1Char('=') + value;
        }
    }
    return text;
}

QString Printer::tabPosition(const QWidget& widget) const
{
    const auto found = std::find(m_tabOrder.begin(), m_tabOrder.end(), &widget);
    return found != m_tabOrder.end() ? QStringLiteral(" tab=%1").arg(found - m_tabOrder.begin() + 1)
                                     : QString();
}

QString Printer::describe(const QObject& object) const
{
    QString line = QString::fromLatin1(object.metaObject()->className()) + QLatin1Char(' ') +
                   object.objectName();
    if (const auto* widget = qobject_cast<const QWidget*>(&object); widget != nullptr) {
        line += tabPosition(*widget);
        if (!widget->isWindow() && widget->isHidden() &&
            widget->testAttribute(Qt::WA_WState_ExplicitShowHide)) {
            line += QLatin1String(" hidden");
        }
    }
    return (line + properties(object) + details(object)).trimmed();
}

/// What is not in the properties.
QString Printer::details(const QObject& object) const
{
    if (const auto* label = qobject_cast<const QLabel*>(&object);
        label != nullptr && label->buddy() != nullptr) {
        return QLatin1String(" buddy=") + label->buddy()->objectName();
    }
    if (const auto* edit = qobject_cast<const QLineEdit*>(&object);
        edit != nullptr && edit->validator() != nullptr) {
        const auto& validator =
            dynamic_cast<const QRegularExpressionValidator&>(*edit->validator());
        return QLatin1String(" validator=") + validator.regularExpression().pattern();
    }
    if (const auto* bar = qobject_cast<const QToolBar*>(&object); bar != nullptr) {
        const auto& window = dynamic_cast<const QMainWindow&>(*bar->parent());
        const bool isAtTop = window.toolBarArea(const_cast<QToolBar*>(bar)) == Qt::TopToolBarArea;
        return QLatin1String(isAtTop ? " at the top actions=" : " not at the top actions=") +
               joined(bar->actions().size(), [bar](int index) {
                   const QAction& action = *bar->actions().at(index);
                   return action.isSeparator() ? QStringLiteral("|") : action.objectName();
               });
    }
    if (const auto* box = qobject_cast<const QDialogButtonBox*>(&object); box != nullptr) {
        QString buttons;
        for (const auto standard : {QDialogButtonBox::Ok, QDialogButtonBox::Cancel}) {
            const QPushButton& button = *box->button(standard);
            buttons += QLatin1Char(' ') + quoted(button.text().remove(QLatin1Char('&'))) +
                       tabPosition(button) + QLatin1String(button.isDefault() ? " default" : "");
        }
        return buttons;
    }
    if (const auto* combo = qobject_cast<const QComboBox*>(&object); combo != nullptr) {
        return QLatin1String(" items=") + joined(combo->count(), [combo](int index) {
                   const QString data = combo->itemData(index).toString();
                   return quoted(combo->itemText(index)) +
                          (data.isEmpty() ? QString() : QLatin1Char('(') + data + QLatin1Char(')'));
               });
    }
    if (const auto* view = qobject_cast<const QAbstractItemView*>(&object);
        view != nullptr && qobject_cast<const QListWidget*>(view) == nullptr) {
        const QAbstractItemModel& model = *view->model();
        return QLatin1String(" columns=") + joined(model.columnCount(), [&model](int column) {
                   return quoted(model.headerData(column, Qt::Horizontal).toString());
               });
    }
    return {};
}

void Printer::addLayout(int depth, const QLayout& layout)
{
    add(depth, QString::fromLatin1(layout.metaObject()->className()) + QLatin1Char(' ') +
                   layout.objectName());
    for (int index = 0; index < layout.count(); ++index) {
        QLayoutItem& item = *layout.itemAt(index);
        if (item.layout() != nullptr) {
            addLayout(depth + 1, *item.layout());
        } else if (item.widget() != nullptr) {
            addWidget(depth + 1, *item.widget());
        } else {
            add(depth + 1, item.expandingDirections() == Qt::Vertical
                               ? QStringLiteral("vertical spacer")
                               : QStringLiteral("horizontal spacer"));
        }
    }
}

void Printer::addWidget(int depth, const QWidget& widget)
{
    add(depth, describe(widget));
    if (const auto* tabs = qobject_cast<const QTabWidget*>(&widget); tabs != nullptr) {
        addPages(depth + 1, *tabs);
    } else if (qobject_cast<const QGroupBox*>(&widget) != nullptr ||
               widget.metaObject() == &QWidget::staticMetaObject) {
        addContents(depth + 1, widget);
    }
}

/// The pages in order, and then those that were removed from the tabs.
void Printer::addPages(int depth, const QTabWidget& tabs)
{
    for (int index = 0; index < tabs.count(); ++index) {
        add(depth, QLatin1String("page ") + quoted(tabs.tabText(index)) + QLatin1Char(' ') +
                       tabs.widget(index)->objectName());
        addContents(depth + 1, *tabs.widget(index));
    }
    for (const QWidget* page :
         tabs.findChildren<QWidget*>(QRegularExpression(QStringLiteral("^tab[A-Z]")))) {
        if (tabs.indexOf(const_cast<QWidget*>(page)) < 0) {
            add(depth, QLatin1String("removed page ") + page->objectName());
            addContents(depth + 1, *page);
        }
    }
}

/// The widget's layout, and its named children that no layout places.
void Printer::addContents(int depth, const QWidget& widget)
{
    const bool isMainWindow = qobject_cast<const QMainWindow*>(&widget) != nullptr;
    if (widget.layout() != nullptr && !isMainWindow) {
        addLayout(depth, *widget.layout());
    }
    for (const QWidget* child :
         widget.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        const bool isPlaced = !isMainWindow && widget.layout() != nullptr;
        if (!isPlaced && !child->objectName().isEmpty() && !child->isWindow()) {
            addWidget(depth, *child);
        }
    }
}

} // namespace

QString formText(const QWidget& window)
{
    return Printer(window).text();
}

QString differenceFrom(const QString& file, const QString& text)
{
    const std::string path = QVVISA_GUI_TESTS "/" + file.toStdString();
    if (qEnvironmentVariableIsSet("QVVISA_WRITE_GOLDEN")) {
        support::writeFile(path, text.toStdString());
        return {};
    }
    const QStringList expected =
        QString::fromStdString(support::readFile(path)).split(QLatin1Char('\n'));
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (int index = 0; index < std::max(expected.size(), lines.size()); ++index) {
        if (expected.value(index) != lines.value(index)) {
            return QStringLiteral("%1, line %2:\n  file:   %3\n  window: %4")
                .arg(file)
                .arg(index + 1)
                .arg(expected.value(index), lines.value(index));
        }
    }
    return {};
}

} // namespace guitest
