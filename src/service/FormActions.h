// What the form does on keys and in the list's context menu beside what its controls do themselves.
#pragma once

#include "platform/runtime/Text.h"

#include <functional>
#include <QKeySequence>
#include <QList>
#include <QObject>
#include <vector>

class QAction;
class QPoint;
class QWidget;

namespace qor {

struct FormAction
{
    QString text = {}; ///< in the menu; empty for a key alone
    QList<QKeySequence> keys;
    QList<QWidget*> where; ///< where the keys work; a text field keeps those that it needs itself
    std::function<void()> run;
    std::function<bool()> isUseful = {};       ///< whether it does anything now; always where there is none
    std::function<QString()> currentText = {}; ///< what the menu says now, where that changes
    bool listHandlesKey = false;               ///< the key is the list's own; the menu only shows it
};

/// Keeps the actions for the life of the form. Nothing is done while what they are for is disabled.
class FormActions : public QObject
{
    Q_OBJECT
public:
    /// menu: the name of the menu's window.
    FormActions(QWidget& form, const QWidget& directory, QString menu);

    void Add(FormAction action);
    /// Shows those that have a text; what does nothing now is disabled there. A key that does nothing is taken all the
    /// same, so that it does not reach the list.
    void ShowMenu(const QPoint& position);

private:
    struct Entry
    {
        FormAction action;
        QAction* menuAction; ///< null for a key alone
    };

    QWidget& mForm;
    const QWidget& mDirectory;
    QString mMenu;
    std::vector<Entry> mEntries;
};

} // namespace qor
