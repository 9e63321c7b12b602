// The editor from the host's call until it is painted.
#pragma once

#include "Bench.h"
#include "QOR_DIR_Node.h"

#include <QApplication>
#include <QMessageBox>

namespace qor {

/// Stops the clock when the directory list has been painted, and closes the form.
class PaintClock : public QObject
{
public:
    PaintClock() { qApp->installEventFilter(this); }

    void Start()
    {
        mPainted = 0;
        mClock.start();
    }
    double PaintedAfter() const
    {
        if (mPainted == 0)
            Fail(u"the form was not painted"_s);
        return static_cast<double>(mPainted) / 1e6;
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && mPainted == 0) {
            if (const auto* box = qobject_cast<QMessageBox*>(watched))
                Fail(box->text());
            if (watched->parent() != nullptr && watched->parent()->objectName() == u"LVDirectory"_s) {
                mPainted = -1;
                QMetaObject::invokeMethod(this, &PaintClock::Stop, Qt::QueuedConnection);
            }
        }
        return false;
    }

private:
    void Stop()
    {
        mPainted = mClock.nsecsElapsed();
        QApplication::activeModalWidget()->close();
    }

    QElapsedTimer mClock;
    qint64 mPainted = 0; ///< in ns; -1 between the painting and its end
};

/// In ms.
inline double OpenEditor(PaintClock& clock, std::int16_t partition, std::int16_t node)
{
    IClassFactory* factory = nullptr;
    _BusinessRules* rules = nullptr;
    clock.Start();
    DllGetClassObject(CLSID_BusinessRules, IID_IClassFactory, reinterpret_cast<void**>(&factory));
    factory->CreateInstance(nullptr, IID__BusinessRules, reinterpret_cast<void**>(&rules));
    factory->Release();
    rules->ShowNodeEditor(1, partition, node, nullptr);
    rules->Release();
    return clock.PaintedAfter();
}

} // namespace qor
