// The form's own keys, and its context menus.
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
    QList<QWidget*> where; ///< where the keys work; a text field keeps those that it uses itself
    std::function<void()> run;
    std::function<bool()> isUseful = {};       ///< whether it would do anything now; empty for always
    std::function<QString()> currentText = {}; ///< what the menu says now, if that changes
    bool listHandlesKey = false;               ///< the key is the list's own; the menu only shows it
};

/// Keeps the actions for the life of the form. They do nothing while the directory is disabled.
class FormActions : public QObject
{
    Q_OBJECT
public:
    /// menu: the menu's object name.
    FormActions(QWidget& form, const QWidget& directory, QString menu);

    void Add(FormAction action);
    /// Shows those that have a text, disabled if they would do nothing. Their keys are taken even then, so that the
    /// list does not act on them.
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
