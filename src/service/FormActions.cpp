#include "service/FormActions.h"

#include "platform/runtime/ErrorReport.h"

#include <QAction>
#include <QMenu>
#include <QShortcut>

namespace qor {

FormActions::FormActions(QWidget& form, const QWidget& directory, QString menu)
    : QObject(&form), mForm(form), mDirectory(directory), mMenu(std::move(menu))
{
}

void FormActions::Add(FormAction action)
{
    const auto run = [this, run = action.run] {
        if (mDirectory.isEnabled())
            GuardEvent(run);
    };
    if (!action.listHandlesKey) {
        for (QWidget* widget : action.where) {
            for (const QKeySequence& key : action.keys) {
                const bool everywhere = widget == &mForm;
                auto* shortcut = new QShortcut(key, widget);
                shortcut->setContext(everywhere ? Qt::WindowShortcut : Qt::WidgetWithChildrenShortcut);
                connect(shortcut, &QShortcut::activated, this, run);
            }
        }
    }
    QAction* menuAction = nullptr;
    if (!action.text.isEmpty()) {
        menuAction = new QAction(action.text, this);
        menuAction->setShortcut(action.keys.value(0)); // for the menu to show: no widget holds the action
        menuAction->setShortcutVisibleInContextMenu(true);
        connect(menuAction, &QAction::triggered, this, run);
    }
    mEntries.push_back({std::move(action), menuAction});
}

void FormActions::ShowMenu(const QPoint& position)
{
    QMenu menu(&mForm);
    menu.setObjectName(mMenu);
    for (const auto& [action, menuAction] : mEntries) {
        if (!menuAction)
            continue;
        menuAction->setText(action.currentText ? action.currentText() : action.text);
        menuAction->setEnabled(!action.isUseful || action.isUseful());
        menu.addAction(menuAction);
    }
    menu.exec(position);
}

} // namespace qor
