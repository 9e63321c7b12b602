// Sits in a host's process: as soon as there is an application it looks for what the component opens, prints
// what a user would see and closes it.
#include <cstdio>
#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QTableView>
#include <QTimer>

namespace {

using namespace Qt::StringLiterals;

constexpr int lookEvery = 2; // ms

void Look()
{
    QWidget* modal = QApplication::activeModalWidget();
    if (!modal)
        return;
    QString line = modal->windowTitle();
    if (const auto* box = qobject_cast<QMessageBox*>(modal))
        line = u"BOX %1|%2"_s.arg(line, box->text().replace(u'\n', u'/'));
    if (const auto* list = modal->findChild<QTableView*>(u"LVDirectory"_s))
        line = u"FORM %1|%2|%3|%4"_s.arg(line)
                   .arg(list->model()->rowCount())
                   .arg(modal->findChild<QLabel*>(u"lblRecordPosition"_s)->text())
                   .arg(modal->height());
    std::printf("%s\n", qUtf8Printable(line));
    modal->close();
}

void Start()
{
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
        return;
    auto* timer = new QTimer(QCoreApplication::instance());
    QObject::connect(timer, &QTimer::timeout, Look);
    timer->start(lookEvery);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(Start)
