// Hosts that use the toolkit themselves, one for each way in which they can be in the component's way or it
// in theirs. Each prints what it got.
//
//     QtHost SCENARIO [CALL...]
#include "Host.h"

#include <array>
#include <clocale>
#include <malloc.h>
#include <map>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStyle>
#include <QTimer>
#include <thread>

namespace {

using namespace Qt::StringLiterals;

using Calls = std::vector<Call>;

void Show(const Call& call)
{
    ShowOnce(DllGetClassObject, call);
}

void ShowAll(const Calls& calls)
{
    for (const Call& call : calls)
        Show(call);
}

struct Arguments
{
    int count = 1;
    std::array<char, 5> name{"host"};
    std::array<char*, 2> values{name.data(), nullptr};
};

/// The host's application, with its arguments.
template <typename Kind>
class Application : private Arguments, public Kind
{
public:
    Application() : Kind(count, values.data()) {}
};

/// The one modal window, if it is the editor.
QDialog* OpenEditor()
{
    return qobject_cast<QDialog*>(QApplication::activeModalWidget());
}

/// Does something once, as soon as the editor is open.
template <typename Action>
void WhenOpen(QTimer& timer, Action action)
{
    QObject::connect(&timer, &QTimer::timeout, [&timer, action] {
        if (QDialog* editor = OpenEditor()) {
            timer.stop();
            action(*editor);
        }
    });
    timer.start(2);
}

/// What a host may have set, and counts on.
QStringList HostState()
{
    QSqlQuery query(u"SELECT n FROM t"_s);
    return {QLocale().name(),
            QString::fromLatin1(std::setlocale(LC_ALL, nullptr)),
            QApplication::applicationName(),
            QApplication::applicationDisplayName(),
            QApplication::organizationName(),
            QApplication::style()->name(),
            QApplication::palette().color(QPalette::Window).name(),
            QApplication::font().toString(),
            qApp->styleSheet(),
            QString::number(QApplication::quitOnLastWindowClosed()),
            QString::number(QApplication::overrideCursor() != nullptr),
            QString::number(QApplication::topLevelWidgets().size()),
            QSqlDatabase::connectionNames().join(u' '),
            query.next() ? query.value(0).toString() : u"no row"_s,
            QDir::currentPath()};
}

void HostWithOwnSettings(const Calls& calls)
{
    std::setlocale(LC_NUMERIC, "C");
    QLocale::setDefault(QLocale(u"de_CH"_s));
    const Application<QApplication> application;
    QCoreApplication::setApplicationName(u"builder"_s);
    QCoreApplication::setOrganizationName(u"somebody"_s);
    QApplication::setStyle(u"windows"_s);
    QApplication::setPalette(QPalette(QColor(10, 20, 30)));
    QApplication::setFont(QFont(u"DejaVu Serif"_s, 14));
    qApp->setStyleSheet(u"QLabel { color: red }"_s);
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s);
        database.setDatabaseName(u":memory:"_s);
        database.open();
        QSqlQuery(u"CREATE TABLE t AS SELECT 42 AS n"_s);
    }
    const QStringList before = HostState();
    ShowAll(calls);
    const QStringList after = HostState();
    for (qsizetype i = 0; i < before.size(); ++i) {
        if (before[i] != after[i])
            std::printf("CHANGED %s to %s\n", qUtf8Printable(before[i]), qUtf8Printable(after[i]));
    }
}

/// The editor is the only window, and closing it is not the end of the host.
void LoopGoesOn(const Calls& calls)
{
    const Application<QApplication> application;
    QTimer::singleShot(0, [&] {
        ShowAll(calls);
        QTimer::singleShot(100, [] {
            std::printf("LOOP goes on\n");
            QCoreApplication::exit(5);
        });
    });
    std::printf("LOOP ended with %d\n", QCoreApplication::exec());
}

template <typename Kind>
void OtherApplication(const Calls& calls)
{
    const Application<Kind> application;
    ShowAll(calls);
}

/// The application is here, the first call comes from elsewhere, the others from here.
void OtherThread(const Calls& calls)
{
    const Application<QApplication> application;
    std::thread(Show, calls.at(0)).join();
    ShowAll({calls.begin() + 1, calls.end()});
}

/// The second call comes while the first one's editor is open.
void Reentrant(const Calls& calls)
{
    const Application<QApplication> application;
    QTimer timer;
    WhenOpen(timer, [&](QDialog& editor) {
        Show(calls.at(1));
        std::printf("FIRST %s\n", editor.isVisible() ? "open" : "closed");
        editor.close();
    });
    Show(calls.at(0));
}

void ExitBeforeLoop(const Calls& calls)
{
    const Application<QApplication> application;
    QCoreApplication::exit();
    ShowAll(calls);
}

template <typename Leave>
void LeaveWhileOpen(const Calls& calls, Leave leave)
{
    const Application<QApplication> application;
    QTimer timer;
    WhenOpen(timer, [leave](QDialog&) { leave(); });
    QTimer::singleShot(0, [&] { ShowAll(calls); });
    std::printf("LOOP ended with %d\n", QCoreApplication::exec());
}

void ExitWhileOpen(const Calls& calls)
{
    LeaveWhileOpen(calls, [] { QCoreApplication::exit(5); });
}

void QuitWhileOpen(const Calls& calls)
{
    LeaveWhileOpen(calls, [] { QCoreApplication::quit(); });
}

/// An application ends, another one starts and ends, the component must make its own.
void SuccessiveApplications(const Calls& calls)
{
    OtherApplication<QApplication>(calls);
    OtherApplication<QApplication>(calls);
    ShowAll(calls);
}

/// What must not grow from opening to opening.
struct Held
{
    Held()
        : connections(QSqlDatabase::connectionNames().size()),
          widgets(QApplication::allWidgets().size()),
          objects(qApp->findChildren<QObject*>().size()),
          descriptors(QDir(u"/proc/self/fd"_s).entryList(QDir::AllEntries | QDir::System).size()),
          bytes(static_cast<qsizetype>(mallinfo2().uordblks))
    {
    }

    qsizetype connections;
    qsizetype widgets;
    qsizetype objects;
    qsizetype descriptors;
    qsizetype bytes;
};

void Repeat(const Calls& calls)
{
    constexpr int rounds = 200;
    constexpr int warmUp = 50;
    const Application<QApplication> application;
    const auto run = [&](int first, int last) {
        for (int i = first; i < last; ++i)
            Show(calls[static_cast<std::size_t>(i) % calls.size()]);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    run(0, warmUp);
    const Held before;
    run(warmUp, rounds);
    const Held after;
    std::printf("GROWTH connections %lld widgets %lld objects %lld descriptors %lld KiB %lld\n",
                after.connections - before.connections, after.widgets - before.widgets,
                after.objects - before.objects, after.descriptors - before.descriptors,
                (after.bytes - before.bytes) / 1024);
}

const std::map<std::string, void (*)(const Calls&)> scenarios{
    {"own-settings", HostWithOwnSettings},
    {"loop", LoopGoesOn},
    {"core", OtherApplication<QCoreApplication>},
    {"gui", OtherApplication<QGuiApplication>},
    {"other-thread", OtherThread},
    {"reentrant", Reentrant},
    {"exit-before-loop", ExitBeforeLoop},
    {"exit-while-open", ExitWhileOpen},
    {"quit-while-open", QuitWhileOpen},
    {"successive-applications", SuccessiveApplications},
    {"repeat", Repeat},
};

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2)
        return 2;
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    LoadDriver();
    scenarios.at(argv[1])(CallsFrom(argc - 2, argv + 2));
    return 0;
}
