// The form as it lies on screen: the controls under their names, the identity of the node that it shows, the moving and
// hiding of controls. It serves no events.
#pragma once

#include "form/DirectoryRows.h"
#include "platform/ui/ComboBox.h"
#include "platform/ui/Form.h"
#include "platform/ui/ListBox.h"
#include "platform/ui/ListView.h"
#include "platform/ui/StatusBar.h"
#include "platform/ui/TextBox.h"
#include "rules/OtherStations.h"

#include "ui_frmDIR.h"

#include <array>
#include <functional>
#include <optional>

namespace qor {

/// A field that is laid over a row to edit one of its cells in place. Its events carry the name of its control.
struct EntryEditor
{
    QWidget* control;
    DirectoryColumn column;
    bool (*admits)(QChar); ///< which characters may be typed

    /// Null for the prompt, which is edited in a combo box.
    TextBox* Text() const { return qobject_cast<TextBox*>(control); }
    /// What the field shows now.
    void Fill(const QString& text) const;
};

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
    Partition PartitionShown() const { return {mConfigID, mPartitionID}; }
    NodeIdentity NodeShown() const { return {PartitionShown(), mNodeNumber}; }

    /// Whether the form shows a node; without one its fields, its list, OK and Apply cannot be used.
    bool ShowsNode() const { return mShowsNode; }
    void SetShowsNode(bool shown);
    /// What is known of the node on display in the database.
    const KnownNode& Known() const { return mKnown; }
    void SetKnown(KnownNode known) { mKnown = std::move(known); }
    /// What the database holds of it, unless others changed it since; null while that is not known, as after a save
    /// that failed.
    const DirectoryNode* Stored() const { return mKnown.attempted || !mKnown.stored ? nullptr : &*mKnown.stored; }

    /// The highest number of the partition's message nodes, which both number lists go up to; 0 until it is known.
    int HighestMessageNode() const { return mHighestMessageNode; }
    /// Fills both number lists up to this one; 0 empties the list of prompts and leaves the other one.
    void SetHighestMessageNode(int number);

    /// The five in-place fields, in the order of their columns.
    const std::array<EntryEditor, 5>& EntryEditors() const { return mEntryEditors; }

    /// Whether entries are edited in place; the caption of cmdDirEdit, "Edit Off", is what tells it.
    bool InEditMode() const;
    void SetEditMode(bool on);

    /// Shows the in-place fields over the cells of a row: at the row's top, each from its column's left edge
    /// and as wide as the column. The password's field stays hidden, as its column is.
    void LayEntryEditors(int row);
    /// Lets the in-place fields show the texts of a row, which stays as it is.
    void FillEntryEditors(int row);
    /// Runs what may scroll the rows, which hides the in-place fields; where they were shown they come back over their
    /// row, with the focus.
    void KeepEntryEditors(const std::function<void()>& change);
    /// Hides the five fields that are laid over a row to edit it in place.
    void HideEntryEditors();
    /// Whether any of them shows; one whose column is scrolled out sideways does not.
    bool EntryEditorsShown() const;

    /// Enables cmdApply: something is changed.
    void MarkChanged() { cmdApply->setEnabled(true); }
    /// Disables cmdApply: nothing is changed. A focus on it goes to cmdOK, not to the record selector that comes next
    /// and would move on with an arrow key.
    void MarkUnchanged();

    /// The first control in tab order that can be used gets the focus; otherwise a form that opens gives it to its
    /// default button.
    void FocusFirstControl();

    /// Shows or hides the line at the list's lower edge; the list makes room for it.
    void ShowFindLine(bool shown);

    void HideNavigation();
    /// Moves what stands below the hidden navigation row up into its place and makes the form that much
    /// shorter.
    void CompactLayoutWithoutNavigation();
    /// "3 of 12", narrowed where it needs more than its label's width.
    void ShowPosition(const QString& position);
    /// Enables the navigation buttons that lead anywhere from the selector's position.
    void EnableNavigationButtons();

protected:
    QAbstractButton* CancelButton() const override { return cmdCancel; }
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void SetUpFonts();
    void SetUpIcons();
    void SetUpColours();
    void RestoreSize();
    void SaveSize() const;
    void FollowEdges(const QSize& growth);
    void WidenNames(int before, int after);
    void LayOver(const EntryEditor& editor, int row);

    qint16 mConfigID = 0;
    qint16 mPartitionID = 0;
    qint16 mNodeNumber = 0;
    bool mShowsNode = true;
    KnownNode mKnown;
    int mHighestMessageNode = 0;
    QSize mLaidSize; ///< what the controls are laid out for
    QSize mOpenedSize;
    int mHiddenHeight = 0; ///< by how much the form is shorter without its navigation
    std::array<EntryEditor, 5> mEntryEditors;
};

} // namespace qor
