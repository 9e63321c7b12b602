// What the editor keeps of node 7 beside the database: its drafts, and the questions that offer them.
#pragma once

#include "rules/DirectoryNode.h"
#include "support/Editor.h"
#include "support/SampleDatabase.h"

#include <QDir>

namespace qor {

inline const NodeIdentity node7{{1, 1}, 7};
inline const char* const label = "txtDescription";

inline const QString changed = u"Changes to DIR 7 of * were not saved.\nDo you want to restore them?"_s;
inline const QString savedSince = changed + u"\nThe directory was saved since then."_s;

inline ExpectedBox Offer(const QString& text, QMessageBox::StandardButton answer)
{
    return Question(text, answer, u"Question"_s);
}

class KeptFilesTest : public QObject
{
protected:
    std::unique_ptr<SampleDatabase> mSample;

    void StartAnew()
    {
        mSample = std::make_unique<SampleDatabase>();
        mSample->SetEntries(7, mSample->Entries(7).first(4));
        // No message node is missing.
        mSample->Run(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 999) INSERT INTO "
                     "Node_General_Pool SELECT 1, 1, 0, i, 'MSG', '', '' FROM n WHERE true ON CONFLICT DO NOTHING"_s);
    }

    QString Misc() const { return mSample->ProductFolder() + u"/Misc/"_s; }
    /// What lies in the Misc folder of drafts, without the number of the process.
    QStringList Files() const
    {
        QStringList names = QDir(Misc()).entryList({u"DIRUnsaved*"_s}, QDir::AllEntries | QDir::System);
        return names.replaceInStrings(QRegularExpression(u"\\.\\d+\\.json"_s), u".json"_s);
    }
    static void Open7(const Editor::User& user, std::initializer_list<ExpectedBox> before = {})
    {
        Editor::Open(1, 1, 7, user, before);
    }
};

} // namespace qor
