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

QString BoxLine(const QMessageBox& box)
{
    return u"BOX %1|%2"_s.arg(box.windowTitle(), box.text().replace(u'\n', u'/'));
}

QString FormLine(const QDialog& form)
{
    const auto* list = form.findChild<QTableView*>(u"LVDirectory"_s);
    const auto* position = form.findChild<QLabel*>(u"lblRecordPosition"_s);
    return u"FORM %1|%2|%3|%4"_s.arg(form.windowTitle())
        .arg(list ? list->model()->rowCount() : -1)
        .arg(position ? position->text() : QString())
        .arg(form.height());
}

void Look()
{
    QWidget* modal = QApplication::activeModalWidget();
    QString line;
    if (const auto* box = qobject_cast<QMessageBox*>(modal))
        line = BoxLine(*box);
    else if (const auto* form = qobject_cast<QDialog*>(modal))
        line = FormLine(*form);
    else
        return;
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
