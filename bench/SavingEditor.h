// The component's side of a save: a form that shows a node, without a window.
#pragma once

#include "Bench.h"
#include "editor/BusinessRules.h"
#include "editor/Drafts.h"
#include "editor/History.h"
#include "editor/ShownNode.h"
#include "rules/NodeLoading.h"
#include "rules/NodeSaving.h"
#include "support/BareForm.h"

namespace qor {

class SavingEditor
{
public:
    explicit SavingEditor(int size) : mNode(NodeOfSize(size)), mHistory(mForm), mDrafts(mForm, mHistory)
    {
        mForm.SetNodeNumber(mNode);
        mForm.SetConfigID(1);
        mForm.SetPartitionID(1);
        ResetDirectoryListView(*mForm.LVDirectory);
        if (!mRules.LoadPromptMSGNodeNumber(mForm))
            Fail(u"no message nodes"_s);
        Load();
    }
    /// Over the connection of SaveAlone.
    void Look()
    {
        if (!LoadNode(mDataBase, mForm.NodeShown(), mForm.HighestMessageNode()))
            Fail(u"no node"_s);
    }
    void Load()
    {
        if (!mRules.LoadData(mForm, mNode))
            Fail(u"no node"_s);
    }
    /// The commands alone, as a save was before anything was kept beside it.
    void SaveAlone() { SaveNode(mDataBase, NodeOn(mForm, mNode)); }
    void Save()
    {
        if (!mRules.MayOverwrite(mForm))
            Fail(u"another station"_s);
        mDrafts.KeepForSave();
        mRules.SaveChanges(mForm, mNode);
        mDrafts.DropIfSaved();
    }
    void KeepDraft()
    {
        mForm.MarkChanged();
        mDrafts.Keep();
    }
    const ListView& List() const { return *mForm.LVDirectory; }

private:
    qint16 mNode;
    DataBase mDataBase;
    BareForm mForm;
    BusinessRules mRules;
    History mHistory;
    Drafts mDrafts;
};

} // namespace qor
