// SPDX-License-Identifier: MIT
// What holds for all four windows: their forms, texts, names for screen readers, and settings.
#include "gui/MainWindow.h"
#include "gui/PropertyDialog.h"
#include "gui/ResourceDialog.h"
#include "gui/RsrcStringEditor.h"
#include "tests/gui/common/FontSize.h"
#include "tests/gui/common/FormText.h"
#include "tests/gui/common/Settings.h"
#include "tests/gui/common/WindowTest.h"
#include "tests/support/Children.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTabBar>
#include <QTabWidget>

#include <memory>

using guitest::FontSize;

namespace {

template <typename... Classes>
bool isOneOf(const QObject& object)
{
    return ((qobject_cast<const Classes*>(&object) != nullptr) || ...);
}

bool isControl(const QWidget& widget)
{
    return isOneOf<QLineEdit, QComboBox, QAbstractButton, QAbstractItemView>(widget);
}

QString nameOf(const QWidget& widget)
{
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    return button != nullptr ? button->text() : widget.objectName();
}

QSize neededSize(const QWidget& widget)
{
    const auto* label = qobject_cast<const QLabel*>(&widget);
    return label != nullptr && label->wordWrap() ? QSize(0, label->heightForWidth(label->width()))
                                                 : widget.sizeHint();
}

/// The visible labels, fields, buttons, tabs and group boxes of a shown window that are smaller
/// than their text needs, reach beyond the window or overlap another.
QString cutOffParts(const QWidget& window)
{
    QCoreApplication::processEvents();
    QList<const QWidget*> parts;
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        if (widget->isVisible() && widget->window() == &window &&
            isOneOf<QLabel, QComboBox, QLineEdit, QGroupBox, QTabBar, QAbstractButton>(*widget)) {
            parts.append(widget);
        }
    }
    const auto place = [&window](const QWidget& widget) {
        return QRect(widget.mapTo(&window, QPoint()), widget.size());
    };
    QStringList faults =
        parts.isEmpty() ? QStringList(QStringLiteral("nothing to check")) : QStringList();
    for (const QWidget* part : parts) {
        if (part->size().expandedTo(neededSize(*part)) != part->size()) {
            faults.append(nameOf(*part) + QLatin1String(" is too small"));
        }
        if (!window.rect().contains(place(*part))) {
            faults.append(nameOf(*part) + QLatin1String(" reaches beyond the window"));
        }
        for (const QWidget* other : parts) {
            if (other != part && !other->isAncestorOf(part) && !part->isAncestorOf(other) &&
                place(*part).intersects(place(*other))) {
                faults.append(nameOf(*part) + QLatin1String(" overlaps ") + nameOf(*other));
            }
        }
    }
    return faults.join(QLatin1String(", "));
}

/// What a screen reader calls the control. A combo box has its choice as its name on Linux, and is
/// called by its labels.
QString spokenName(QWidget& widget)
{
    const QAccessibleInterface& control = *QAccessible::queryAccessibleInterface(&widget);
    if (control.role() != QAccessible::ComboBox) {
        return control.text(QAccessible::Name);
    }
    QStringList labels;
    for (const auto& [label, relation] : control.relations(QAccessible::Label)) {
        labels.append(label->text(QAccessible::Name));
    }
    return labels.join(QLatin1String(" of "));
}

} // namespace

class TestWindows : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void formIsAsInTheFile_data() { eachWindow(); }
    void formIsAsInTheFile()
    {
        open();
        const QString difference = guitest::differenceFrom(
            QString::fromLatin1(QTest::currentDataTag()) + QStringLiteral("/form.txt"),
            guitest::formText(*m_window));
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
    }

    void noTextIsCutOff_data() { eachWindow(); }
    void noTextIsCutOff()
    {
        for (const int pixels : {FontSize::usual, FontSize::large}) {
            const FontSize fontSize(pixels);
            open();
            for (int state = 0; state < states(); ++state) {
                setState(state);
                QCOMPARE(cutOffParts(*m_window), QString());
            }
            if (dynamic_cast<gui::PropertyDialog*>(m_window.get()) != nullptr) {
                // This one cannot be made smaller than its texts need.
                m_window->resize(1, 1);
                QCOMPARE(cutOffParts(*m_window), QString());
            }
        }
    }

    void everyControlHasANameOfItsOwn_data() { eachWindow(); }
    void everyControlHasANameOfItsOwn()
    {
        open();
        if (auto* tabs = m_window->findChild<QTabWidget*>(); tabs != nullptr) {
            // The pages that this platform does not show.
            for (const char* page : {"tabConfMang", "tabGpibProperties"}) {
                tabs->addTab(&support::child<QWidget>(*m_window, page), QString::fromLatin1(page));
            }
        }
        for (int state = 0; state < states(); ++state) {
            setState(state);
            QStringList names;
            for (QWidget* widget : m_window->findChildren<QWidget*>()) {
                // The parts of a control have the names that Qt gives them.
                if (!isControl(*widget) || isControl(*widget->parentWidget()) ||
                    widget->window() != m_window.get() ||
                    widget->objectName().startsWith(QLatin1String("qt_"))) {
                    continue;
                }
                const QString name = spokenName(*widget);
                QVERIFY2(name.contains(QRegularExpression(QStringLiteral("\\pL"))),
                         qPrintable(widget->objectName()));
                QVERIFY2(!names.contains(name), qPrintable(name));
                names.append(name);
            }
            QVERIFY(names.size() >= 4);
        }
    }

    void firstOpensInTheCentreAtItsDesignedSize_data() { eachWindow(); }
    void firstOpensInTheCentreAtItsDesignedSize()
    {
        QFETCH(const QSize, size);
        const FontSize fontSize(FontSize::usual);
        open();
        QCOMPARE(m_window->size(), size);
        // Of the frame, but in the find dialog, which restores its settings when it has its frame.
        const bool hasFrame = dynamic_cast<gui::ResourceDialog*>(m_window.get()) != nullptr;
        QCOMPARE(hasFrame ? m_window->geometry().topLeft() : m_window->pos(),
                 guitest::centred(size).topLeft());
        QVERIFY(!m_window->isMaximized());
    }

    void sizeAndPositionAreStoredAndRestored_data() { eachWindow(); }
    void sizeAndPositionAreStoredAndRestored()
    {
        QFETCH(const QString, group);
        QFETCH(const QString, settings);
        open();
        m_window->resize(801, 612);
        // Off the screen too.
        m_window->move(-4000, 6000);
        m_window->hide();
        // Every hide of the find dialog writes them, the others' destruction.
        QCOMPARE(QSettings().allKeys().isEmpty(), group != QLatin1String("ResourceDialog"));
        m_window.reset();
        QCOMPARE(settingsFile(), settings.arg(group, QStringLiteral("@Point(-4000 6000)"),
                                              QStringLiteral("@Size(801 612)")));
        open();
        QCOMPARE(m_window->size(), QSize(801, 612));
        QCOMPARE(m_window->pos(), QPoint(-4000, 6000));
        QVERIFY(!m_window->isMaximized());
    }

    void maximisedWindowOpensMaximised_data() { eachWindow(); }
    void maximisedWindowOpensMaximised()
    {
        QFETCH(const QString, group);
        open();
        const QSize designed = m_window->size();
        m_window->showMaximized();
        QTRY_VERIFY(m_window->size() != designed);
        const QSize maximised = m_window->size();
        m_window->hide();
        open();
        QCOMPARE(m_window->isMaximized(), group != QLatin1String("RsrcStringEditor"));
        QCOMPARE(m_window->size(), maximised);
    }

private:
    /// Adds a row for each window, named as the folder of its tests.
    static void eachWindow()
    {
        columns<QString, QSize, QString>("group", "size", "settings");
        const QString usual = QStringLiteral("[%1]\nfullscreen=false\npos=%2\nsize=%3\n");
        QTest::newRow("main_window") << QStringLiteral("MainWindow") << QSize(600, 400) << usual;
        QTest::newRow("property_dialog") << QStringLiteral("PropertyDialog") << QSize(697, 348)
                                         << usual + QStringLiteral("tabindex=0\n");
        QTest::newRow("resource_dialog")
            << QStringLiteral("ResourceDialog") << QSize(492, 386) << usual;
        QTest::newRow("rsrc_string_editor") << QStringLiteral("RsrcStringEditor") << QSize(740, 595)
                                            << QStringLiteral("[%1]\npos=%2\nsize=%3\n");
    }

    /// A new window of the data row, shown, in place of the one before.
    void open()
    {
        QFETCH(const QString, group);
        m_window.reset();
        if (group == QLatin1String("MainWindow")) {
            m_window = std::make_unique<gui::MainWindow>(nullptr);
        } else if (group == QLatin1String("PropertyDialog")) {
            m_window = std::make_unique<gui::PropertyDialog>(*m_model, nullptr);
        } else if (group == QLatin1String("ResourceDialog")) {
            m_window = std::make_unique<gui::ResourceDialog>(nullptr);
        } else {
            m_window = std::make_unique<gui::RsrcStringEditor>(nullptr);
        }
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }

    /// The tabs of the properties dialog, the interfaces of the composer.
    int states() const
    {
        const auto* tabs = m_window->findChild<QTabWidget*>();
        const auto* interfaces = m_window->findChild<QComboBox*>(QStringLiteral("IfcComboBox"));
        return tabs != nullptr ? tabs->count() : interfaces != nullptr ? interfaces->count() : 1;
    }
    void setState(int state)
    {
        if (auto* tabs = m_window->findChild<QTabWidget*>(); tabs != nullptr) {
            tabs->setCurrentIndex(state);
        } else if (auto* interfaces =
                       m_window->findChild<QComboBox*>(QStringLiteral("IfcComboBox"));
                   interfaces != nullptr) {
            interfaces->setCurrentIndex(state);
        }
    }

    void setUp() override
    {
        configuration().write("GPIB0::1::INSTR\nA=ASRL1::INSTR\n");
        bench().write("resource ASRL1::INSTR\nresource ASRL3::INSTR\n");
        m_model = std::make_unique<ConfigurationModel>(nullptr);
        m_model->setGpibProperties({{0, {}}});
    }
    void tearDown() override
    {
        m_window.reset();
        m_model.reset();
    }

    std::unique_ptr<ConfigurationModel> m_model;
    std::unique_ptr<QWidget> m_window;
};

static const guitest::Registration<TestWindows> s_registerWindows;
#include "TestWindows.moc"
