// SPDX-License-Identifier: MIT
#include "tests/gui/common/CutOff.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QCoreApplication>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QTabBar>

namespace guitest {

namespace {

bool showsText(const QWidget& widget)
{
    return qobject_cast<const QLabel*>(&widget) != nullptr ||
           qobject_cast<const QComboBox*>(&widget) != nullptr ||
           qobject_cast<const QLineEdit*>(&widget) != nullptr ||
           qobject_cast<const QGroupBox*>(&widget) != nullptr ||
           qobject_cast<const QTabBar*>(&widget) != nullptr ||
           qobject_cast<const QAbstractButton*>(&widget) != nullptr;
}

QSize neededSize(const QWidget& widget)
{
    const auto* label = qobject_cast<const QLabel*>(&widget);
    if (label != nullptr && label->wordWrap()) {
        return {0, label->heightForWidth(label->width())};
    }
    return widget.sizeHint();
}

QString nameOf(const QWidget& widget)
{
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    return button != nullptr ? button->text() : widget.objectName();
}

} // namespace

QStringList cutOffParts(const QWidget& window, int least)
{
    QCoreApplication::processEvents();
    QList<const QWidget*> parts;
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        if (widget->isVisible() && widget->window() == &window && showsText(*widget)) {
            parts.append(widget);
        }
    }
    QStringList faults;
    if (parts.size() < least) {
        faults.append(QStringLiteral("only %1 parts").arg(parts.size()));
    }
    const auto place = [&window](const QWidget& widget) {
        return QRect(widget.mapTo(&window, QPoint()), widget.size());
    };
    for (const QWidget* part : parts) {
        const QSize needed = neededSize(*part);
        if (part->width() < needed.width() || part->height() < needed.height()) {
            faults.append(QStringLiteral("%1 has %2x%3, needs %4x%5")
                              .arg(nameOf(*part))
                              .arg(part->width())
                              .arg(part->height())
                              .arg(needed.width())
                              .arg(needed.height()));
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
    return faults;
}

} // namespace guitest
