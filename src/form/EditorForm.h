// The form as it lies on screen: the controls under their names, the node's identity, the moving and hiding
// of controls. It knows no rules and serves no events.
#pragma once

#include "form/Directory.h"
#include "platform/ui/ComboBox.h"
#include "platform/ui/Form.h"
#include "platform/ui/ListBox.h"
#include "platform/ui/ListView.h"
#include "platform/ui/StatusBar.h"
#include "platform/ui/TextBox.h"

#include "ui_frmDIR.h"

namespace qor {

class EditorForm : public Form, public Ui::frmDIR
{
    Q_OBJECT
public:
    EditorForm();
    ~EditorForm() override;

    qint16 ConfigID() const { return mConfigID; }
    void SetConfigID(qint16 id) { mConfigID = id; }
    qint16 PartitionID() const { return mPartitionID; }
    void SetPartitionID(qint16 id) { mPartitionID = id; }
    qint16 NodeNumber() const { return mNodeNumber; }
    void SetNodeNumber(qint16 number) { mNodeNumber = number; }

    /// Whether entries are edited in place; the caption of cmdDirEdit, "Edit Off", is what tells it.
    bool InEditMode() const;
    void SetEditMode(bool on);

    /// Shows the in-place fields over the cells of a row: at the row's top, each from its column's left edge
    /// and as wide as the column. The password's field stays hidden, as its column is.
    void LayEntryEditors(int row);
    /// Hides the five fields that are laid over a row to edit it in place.
    void HideEntryEditors();
    /// Whether any of them shows; one whose column is scrolled out sideways does not.
    bool EntryEditorsShown() const;

    /// Disables cmdApply: nothing is changed. A focus on it goes to cmdOK, not to the record selector that comes next
    /// and would move on with an arrow key.
    void MarkUnchanged();

    void HideNavigation();
    /// Moves what stands below the hidden navigation row up into its place and makes the form that much
    /// shorter.
    void CompactLayoutWithoutNavigation();
    /// Enables the navigation buttons that lead anywhere from the selector's position.
    void EnableNavigationButtons();

protected:
    QAbstractButton* CancelButton() const override { return cmdCancel; }
    void changeEvent(QEvent* event) override;

private:
    void SetUpFonts();
    void SetUpIcons();
    void SetUpColours();
    void FixSize(int height);
    void LayOver(QWidget& editor, int row, DirectoryColumn column);

    qint16 mConfigID = 0;
    qint16 mPartitionID = 0;
    qint16 mNodeNumber = 0;
};

} // namespace qor
