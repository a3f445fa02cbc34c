// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/Decoration.h"

#include <QAccessibleWidget>
#include <QWidget>

namespace {

class DecorationInterface final : public QAccessibleWidget
{
public:
    using QAccessibleWidget::QAccessibleWidget;

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.invisible = true;
        return state;
    }
};

QAccessibleInterface* CreateDecorationInterface(const QString& /*className*/, QObject* object)
{
    const bool isDecoration = object->isWidgetType() && object->property("isDecoration").toBool();
    return isDecoration ? new DecorationInterface(static_cast<QWidget*>(object)) : nullptr;
}

} // namespace

void InstallDecorationAccessibility()
{
    QAccessible::installFactory(CreateDecorationInterface);
}
