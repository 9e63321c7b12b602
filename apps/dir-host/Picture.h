// Waits for the editor when nobody is there to use it: takes its picture, prints what it shows and closes it.
#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

class QDialog;
class QMessageBox;

class Picture : public QObject
{
    Q_OBJECT
public:
    explicit Picture(QString fileName);

    /// Whether the editor came up and its picture was written.
    bool Taken() const { return mTaken; }

private:
    void Watch();
    void Take(QDialog& editor);
    static void Report(QMessageBox& box);

    QString mFileName;
    QTimer mTimer;
    bool mTaken = false;
};
