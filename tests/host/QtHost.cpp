// Hosts that use the toolkit themselves, one for each way in which they can be in the component's way or it in
// theirs. Each prints what it got.
//
//     QtHost SCENARIO [CALL...]
#include "Host.h"

#include <array>
#include <clocale>
#include <malloc.h>
#include <map>
#include <memory>
#include <QApplication>
#include <QDebug>
#include <QDir>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStyle>
#include <QTimer>
#include <QWidget>

namespace {

using namespace Qt::StringLiterals;

void ShowAll(const Calls& calls)
{
    ShowAll(DllGetClassObject, calls);
}

int argumentCount = 0;
char** arguments = nullptr;

void WithoutWidgets(const Calls& calls)
{
    const QGuiApplication application(argumentCount, arguments);
    ShowAll(calls);
}

/// Does something once, as soon as the editor is open.
template <typename Action>
void WhenOpen(QTimer& timer, Action action)
{
    QObject::connect(&timer, &QTimer::timeout, [&timer, action] {
        if (QWidget* editor = QApplication::activeModalWidget()) {
            timer.stop();
            action(*editor);
        }
    });
    timer.start(2);
}

/// What a host may have set, and counts on.
QString HostState()
{
    QSqlQuery query(u"SELECT n FROM t"_s);
    QString state;
    QDebug(&state) << "STATE" << QLocale().name() << std::setlocale(LC_ALL, nullptr) << QApplication::applicationName()
                   << QApplication::style()->name() << QApplication::font() << qApp->styleSheet()
                   << QApplication::palette().color(QPalette::Window) << QApplication::quitOnLastWindowClosed()
                   << static_cast<const void*>(QApplication::overrideCursor()) << QSqlDatabase::connectionNames()
                   << query.next() << query.value(0) << QDir::currentPath();
    return state;
}

/// What the component opens is the only window, and closing it is not the end of the host.
void OwnSettings(const Calls& calls)
{
    QLocale::setDefault(QLocale(u"de_CH"_s));
    const QApplication application(argumentCount, arguments);
    std::setlocale(LC_ALL, "C");
    QCoreApplication::setApplicationName(u"builder"_s);
    QApplication::setStyle(u"windows"_s);
    QApplication::setPalette(QPalette(QColor(10, 20, 30)));
    QApplication::setFont(QFont(u"DejaVu Serif"_s, 14));
    qApp->setStyleSheet(u"QLabel { color: red }"_s);
    QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s);
    database.setDatabaseName(u":memory:"_s);
    database.open();
    const QSqlQuery query(u"CREATE TABLE t AS SELECT 42 AS n"_s);
    const QString before = HostState();
    QTimer::singleShot(0, [&] {
        ShowAll(calls);
        QTimer::singleShot(100, [] { QCoreApplication::exit(5); });
    });
    std::printf("LOOP ended with %d\n", QCoreApplication::exec());
    std::printf("%s\n%s\n", qUtf8Printable(before), qUtf8Printable(HostState()));
}

/// The second call comes while the first one's editor is open.
void Reentrant(const Calls& calls)
{
    const QApplication application(argumentCount, arguments);
    QTimer timer;
    WhenOpen(timer, [&](QWidget& editor) {
        ShowAll({calls.at(1)});
        std::printf("FIRST %s\n", editor.isVisible() ? "open" : "closed");
        editor.close();
    });
    ShowAll({calls.at(0)});
}

/// Calls again when its loop has come to its end.
void ExitWhileOpen(const Calls& calls)
{
    const QApplication application(argumentCount, arguments);
    QTimer timer;
    WhenOpen(timer, [](QWidget&) { QCoreApplication::exit(5); });
    QTimer::singleShot(0, [&] { ShowAll(calls); });
    std::printf("LOOP ended with %d\n", QCoreApplication::exec());
}

/// One object serves an application, the next one and then the component's own, and is released when the process ends.
void SuccessiveApplications(const Calls& /*calls*/)
{
    static const std::shared_ptr<_BusinessRules> rules(NewRules(DllGetClassObject), [](auto* r) { r->Release(); });
    for (int i = 0; i < 2; ++i) {
        const QApplication application(argumentCount, arguments);
        rules->ShowNodeEditor(1, 1, 7, nullptr);
    }
    rules->ShowNodeEditor(1, 1, 7, nullptr);
}

/// What must not grow from opening to opening: connections, widgets, other objects, descriptors, bytes.
std::array<qsizetype, 5> Held()
{
    return {QSqlDatabase::connectionNames().size(), QApplication::allWidgets().size(),
            qApp->findChildren<QObject*>().size(),
            QDir(u"/proc/self/fd"_s).entryList(QDir::AllEntries | QDir::System).size(),
            static_cast<qsizetype>(mallinfo2().uordblks)};
}

void Repeat(const Calls& calls)
{
    const QApplication application(argumentCount, arguments);
    const auto run = [&](std::size_t rounds) {
        for (std::size_t i = 0; i < rounds; ++i)
            ShowAll({calls[i % calls.size()]});
    };
    run(40);
    const auto before = Held();
    run(160);
    const auto after = Held();
    std::printf("GROWTH");
    for (std::size_t i = 0; i < before.size(); ++i)
        std::printf(" %lld", after[i] - before[i]);
    std::printf("\n");
}

const std::map<std::string, void (*)(const Calls&)> scenarios{
    {"own-settings", OwnSettings},
    {"gui", WithoutWidgets},
    {"reentrant", Reentrant},
    {"exit-while-open", ExitWhileOpen},
    {"successive-applications", SuccessiveApplications},
    {"repeat", Repeat},
};

} // namespace

int main(int argc, char** argv)
{
    argumentCount = argc;
    arguments = argv;
    LoadDriver();
    scenarios.at(argv[1])({argv + 2, argv + argc});
    return 0;
}
