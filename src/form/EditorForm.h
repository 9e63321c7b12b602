// The form as it lies on screen: its controls by name, the identity of the node that it shows, and how controls move
// and hide (EditorFormLayout.cpp). It handles no events.
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
    /// Sets what the field shows, without Change.
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

    /// Whether the form shows a node; without one its fields, list, OK and Apply cannot be used.
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

    /// Whether entries are edited in place, which the caption of cmdDirEdit, "Edit Off", tells.
    bool InEditMode() const;
    void SetEditMode(bool on);

    /// Shows the in-place fields over the cells of a row: at the row's top, each from its column's left edge
    /// and as wide as the column. The password's field stays hidden, as its column is.
    void LayEntryEditors(int row);
    /// Shows the texts of a row in the in-place fields; the row stays as it is.
    void FillEntryEditors(int row);
    /// Runs a change that may scroll the rows and so hide the in-place fields. If they were shown they come back over
    /// their row, and so does the focus.
    void KeepEntryEditors(const std::function<void()>& change);
    /// Hides the in-place fields.
    void HideEntryEditors();
    /// Whether any of them shows; one whose column is scrolled out of view does not.
    bool EntryEditorsShown() const;

    /// Enables cmdApply: something is changed.
    void MarkChanged() { cmdApply->setEnabled(true); }
    /// Disables cmdApply: nothing is changed. If it has the focus, cmdOK gets it; the toolkit would give it to the
    /// record selector, where an arrow key moves on to another node.
    void MarkUnchanged();

    /// Gives the focus to the first usable control in tab order; left alone, a form that opens gives it to its default
    /// button.
    void FocusFirstControl();

    /// Shows or hides the line at the list's lower edge; the list makes room for it.
    void ShowFindLine(bool shown);

    void HideNavigation();
    /// Moves everything below the hidden navigation row up into its place and makes the form that much shorter.
    void CompactLayoutWithoutNavigation();
    /// "3 of 12", narrowed if its label is not wide enough.
    void ShowPosition(const QString& position);
    /// Enables the navigation buttons that lead somewhere from the selector's position.
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
