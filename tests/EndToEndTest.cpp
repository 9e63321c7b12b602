// The built library through its entry points, driven as a user drives it, against the rows in the database; and what
// is left of a save whose process is killed.
#include "QOR_DIR_Node.h"
#include "support/BoxScript.h"
#include "support/SampleDatabase.h"

#include <iostream>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTableView>
#include <QTest>

using namespace qor;

namespace {

/// Opens the editor on a node of the sample; the user is handed the form once it is shown.
void ShowEditor(std::int16_t node, const std::function<void(QDialog& form)>& user)
{
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        auto* form = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!form || !form->inherits("qor::Form"))
            return;
        timer.stop();
        user(*form);
    });
    timer.start(1);
    IClassFactory* factory = nullptr;
    _BusinessRules* rules = nullptr;
    DllGetClassObject(CLSID_BusinessRules, IID_IClassFactory, reinterpret_cast<void**>(&factory));
    factory->CreateInstance(nullptr, IID__BusinessRules, reinterpret_cast<void**>(&rules));
    factory->Release();
    rules->ShowNodeEditor(1, 1, node, nullptr);
    rules->Release();
}

template <typename Control = QWidget>
Control* Find(const QDialog& form, const char* name)
{
    return form.findChild<Control*>(QLatin1String(name));
}

void Click(const QDialog& form, const char* button)
{
    QTest::mouseClick(Find(form, button), Qt::LeftButton);
}

void ClickRow(const QDialog& form, int row)
{
    auto* list = Find<QTableView>(form, "LVDirectory");
    const QModelIndex cell = list->model()->index(row, 2);
    list->scrollTo(cell);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(cell).center());
}

/// Types over the whole text of a field.
void Type(const QDialog& form, const char* field, const QString& text)
{
    auto* control = Find(form, field);
    control->setFocus();
    QTest::keySequence(control, QKeySequence::SelectAll);
    QTest::keyClicks(control, text);
}

QStringList ShownRows(const QDialog& form)
{
    const auto* model = Find<QTableView>(form, "LVDirectory")->model();
    QStringList rows;
    for (int row = 0; row < model->rowCount(); ++row) {
        QStringList texts;
        for (int column = 1; column <= 5; ++column)
            texts << model->index(row, column).data().toString();
        rows << texts.join(u'|');
    }
    return rows;
}

QString ShownNode(const QDialog& form)
{
    return Find<QComboBox>(form, "cmbNode")->currentText() + u' ' + Find<QLineEdit>(form, "txtDescription")->text();
}

ExpectedBox Question(const QString& text, QMessageBox::StandardButton answer)
{
    return {text, u"Confirmation"_s, QMessageBox::Question, answer};
}

/// Saves the 500 entries of node 12 until it is killed.
int SaveWithoutEnd()
{
    ShowEditor(12, [](QDialog& form) {
        for (int round = 0;; ++round) {
            Find<QLineEdit>(form, "txtDescription")->setText(u"Round %1"_s.arg(round));
            std::cout << "saving" << std::endl;
            Click(form, "cmdApply");
        }
    });
    return 1;
}

} // namespace

class EndToEndTest : public QObject
{
    Q_OBJECT

private:
    SampleDatabase mSample;

    QStringList Stored(int node) const
    {
        return mSample.Run(u"SELECT LastName, FirstName, Extension, NamePrompt, Password FROM Detail_DIR WHERE "
                           "ConfigID = 1 AND PartID = 1 AND NodeMasterID = %1 ORDER BY SequenceNo"_s.arg(node));
    }

private Q_SLOTS:
    void editOneNode()
    {
        QStringList shown;
        ShowEditor(7, [&](QDialog& form) {
            QCOMPARE(ShownNode(form), u"DIR 7 Staff"_s);
            QCOMPARE(ShownRows(form), Stored(7));
            ClickRow(form, 1);
            Click(form, "cmdDirEdit");
            Type(form, "txtLastName", u"O'Brien"_s);
            Type(form, "txtExtension", u"12a4"_s);
            Type(form, "cmbPromptNumber", u"61"_s);
            Click(form, "cmdDirEdit");
            ClickRow(form, 38);
            Click(form, "cmdDirRemove");
            ClickRow(form, 0);
            Click(form, "cmdDirDown");
            Click(form, "cmdDirAdd");
            Click(form, "cmdDirEdit");
            Type(form, "txtLastName", u"Young"_s);
            Type(form, "txtFirstName", u"Zoe"_s);
            Type(form, "cmbPromptNumber", u"1"_s);
            Type(form, "txtDescription", u"Desk"_s);
            shown = ShownRows(form);
            QCOMPARE(shown.size(), 40);
            QCOMPARE(shown[0].section(u'|', 0, 3), u"OBrien|Henry|124|61"_s);
            QCOMPARE(shown[39], u"Young|Zoe|1|1|1"_s);
            BoxScript script{Question(u"Duplicate prompts in Directory. Continue saving?"_s, QMessageBox::Yes)};
            const QString missing =
                u"MSG %1 is referenced but it does not exist.\nDo you want to auto create node 'MSG %1'?"_s;
            script.Expect(ExpectedQuestion{missing.arg(61), u"cmdYes"_s});
            script.Expect(ExpectedQuestion{missing.arg(13), u"cmdYesToAll"_s});
            Click(form, "cmdApply");
            script.Verify();
            QCOMPARE(Stored(7), shown);

            Type(form, "txtDescription", u"Lost"_s);
            script.Expect(Question(u"Do you want to save changes?"_s, QMessageBox::Cancel));
            Click(form, "cmdNext");
            QCOMPARE(ShownNode(form), u"DIR 7 Lost"_s);
            script.Expect(Question(u"Do you want to save changes?"_s, QMessageBox::No));
            Click(form, "cmdNext");
            QCOMPARE(ShownNode(form), u"DIR 12 All extensions"_s);
            QCOMPARE(ShownRows(form), Stored(12));
            Click(form, "cmdLast");
            QCOMPARE(Find<QLabel>(form, "lblRecordPosition")->text(), u"4 of 4"_s);
            Click(form, "cmdPrevious");
            Type(form, "txtDescription", u"Guests"_s);
            script.Expect(Question(u"Do you want to save changes?"_s, QMessageBox::Yes));
            Click(form, "cmdFirst");
            QCOMPARE(ShownNode(form), u"DIR 7 Desk"_s);
            QCOMPARE(ShownRows(form), shown);
            Click(form, "cmdOK");
        });
        QCOMPARE(Stored(7), shown);
        QCOMPARE(mSample.Run(u"SELECT NodeDescription FROM Node_DIR WHERE ConfigID = 1 AND PartID = 1"_s).join(u','),
                 u"New directory,Desk,All extensions,Guests,Null"_s);
        QCOMPARE(mSample.Run(u"SELECT KELFilename FROM Node_MSG WHERE NodeNumber IN (13, 27, 61) ORDER BY NodeNumber"_s)
                     .join(u','),
                 u"P01M013.wav,P01M061.wav"_s);
        QCOMPARE(DllCanUnloadNow(), S_OK);
    }

    void killedWhileSaving()
    {
        mSample.Run(u"UPDATE Detail_DIR SET NamePrompt = SequenceNo WHERE NodeMasterID = 12"_s);
        mSample.Run(
            u"INSERT OR IGNORE INTO Node_General_Pool SELECT 1, 1, 0, NamePrompt, 'MSG', '', '' FROM Detail_DIR "
            "WHERE NodeMasterID = 12"_s);
        const QStringList entries = Stored(12);
        mSample.Run(u"CREATE TABLE Kept AS SELECT * FROM Detail_DIR WHERE NodeMasterID = 12"_s);
        int cutShort = 0;
        for (int i = 0; i < 20; ++i) {
            QProcess child;
            child.start(QCoreApplication::applicationFilePath(), {u"--save"_s});
            QVERIFY(child.waitForReadyRead() && child.readAll().startsWith("saving"));
            QTest::qSleep(static_cast<int>(QRandomGenerator::global()->bounded(60)));
            child.kill();
            QVERIFY(child.waitForFinished());
            QCOMPARE(mSample.Run(u"PRAGMA integrity_check"_s), QStringList{u"ok"_s});
            const QStringList left = Stored(12);
            QCOMPARE(left, entries.first(left.size()));
            cutShort += left.size() < entries.size() ? 1 : 0;
            mSample.Run(u"DELETE FROM Detail_DIR WHERE NodeMasterID = 12"_s);
            mSample.Run(u"INSERT INTO Detail_DIR SELECT * FROM Kept"_s);
        }
        QVERIFY(cutShort > 0);
    }
};

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    if (QCoreApplication::arguments().contains(u"--save"_s))
        return SaveWithoutEnd();
    EndToEndTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "EndToEndTest.moc"
