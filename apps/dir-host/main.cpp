// dir-host: a host program that opens the directory node editor on one node.
#include "Picture.h"
#include "platform/ui/Display.h"
#include "QOR_DIR_Node.h"

#include <memory>
#include <QApplication>
#include <QCommandLineParser>
#include <QDialog>
#include <QDir>
#include <QEvent>
#include <QTemporaryFile>
#include <QTextStream>

namespace {

using namespace Qt::StringLiterals;

constexpr int usageError = 2;

struct Options
{
    std::int16_t config = 1;
    std::int16_t partition = 1;
    std::int16_t node = 7;
    QString dataFolder;
    QString picture;
};

[[noreturn]] void FailUsage(const QString& sentence)
{
    QTextStream(stderr) << "dir-host: " << sentence << " See dir-host --help.\n";
    std::exit(usageError);
}

std::int16_t NumberOption(const QCommandLineParser& parser, const QString& name)
{
    bool ok = false;
    const short number = parser.value(name).toShort(&ok);
    if (!ok)
        FailUsage(u"--%1 takes a number from -32768 to 32767, not \"%2\"."_s.arg(name, parser.value(name)));
    return number;
}

Options ReadOptions(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Opens the directory node editor on one directory node."_s);
    parser.addOption({{u"h"_s, u"help"_s}, u"Print the options."_s});
    parser.addOption({u"config"_s, u"Configuration id."_s, u"id"_s, u"1"_s});
    parser.addOption({u"partition"_s, u"Partition id."_s, u"id"_s, u"1"_s});
    parser.addOption(
        {u"node"_s, u"Number of the directory node; 0 opens the editor as for a new node."_s, u"number"_s, u"7"_s});
    parser.addOption({u"data"_s,
                      u"Folder that holds Quorvanta/KELDAR+/Database/NewDB.mdb, in place of the machine's folders "
                      u"for application data and for documents."_s,
                      u"folder"_s});
    parser.addOption({u"picture"_s,
                      u"Show the editor, write its picture to this file, print the node and close. Without a display "
                      u"this is done in any case, off screen."_s,
                      u"file"_s});
    if (!parser.parse(arguments))
        FailUsage(parser.errorText() + u'.');
    if (parser.isSet(u"help"_s)) {
        QTextStream(stdout) << parser.helpText().replace(u"<executable_name>"_s, u"dir-host"_s);
        std::exit(0);
    }
    if (!parser.positionalArguments().isEmpty())
        FailUsage(u"\"%1\" is not an option."_s.arg(parser.positionalArguments().constFirst()));
    return {NumberOption(parser, u"config"_s), NumberOption(parser, u"partition"_s), NumberOption(parser, u"node"_s),
            parser.value(u"data"_s), parser.value(u"picture"_s)};
}

/// A new temporary file that only its owner can read, because the picture shows people's names. It is removed again
/// unless it is told to stay.
std::unique_ptr<QTemporaryFile> NewPictureFile(int node)
{
    auto file = std::make_unique<QTemporaryFile>(QDir::temp().filePath(u"dir-host-node-%1-XXXXXX.png"_s.arg(node)));
    if (!file->open())
        FailUsage(u"no picture can be written to %1; name a file with --picture."_s.arg(QDir::tempPath()));
    return file;
}

void DrawOffScreen()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (const auto problem = qor::Display().Problem()) {
        QTextStream(stderr) << "dir-host: the editor cannot be shown: " << *problem << ".\n";
        std::exit(1);
    }
}

/// Without a display the editor is drawn off screen and its picture taken, into the returned file if none was named.
std::unique_ptr<QTemporaryFile> PrepareDisplay(const qor::Display& display, Options& options)
{
    if (display.Problem())
        DrawOffScreen();
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM").split(':').first();
    if ((platform != "offscreen" && platform != "minimal") || !options.picture.isEmpty())
        return nullptr;
    auto file = NewPictureFile(options.node);
    options.picture = file->fileName();
    return file;
}

void PrepareData(const QString& folder)
{
    if (folder.isEmpty())
        return;
    if (!QDir(folder).exists())
        FailUsage(u"the folder %1 does not exist."_s.arg(folder));
    const QByteArray path = QDir(folder).absolutePath().toLocal8Bit();
    qputenv("KELDAR_COMMON_APPDATA", path);
    qputenv("KELDAR_COMMON_DOCUMENTS", path);
}

/// Notes whether anything was shown, a box included.
class ShownDialogs : public QObject
{
public:
    bool Any() const { return mAny; }

private:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        mAny = mAny || (event->type() == QEvent::Show && qobject_cast<QDialog*>(object) != nullptr);
        return false;
    }

    bool mAny = false;
};

/// The editor shows nothing, and no box, of a partition without a maximum for message nodes.
void TellNothingShown(const Options& options)
{
    QTextStream(stderr) << u"dir-host: nothing was shown. If nothing else is said above, partition %1 of configuration "
                           u"%2 does not exist or has no maximum number of message nodes.\n"_s.arg(options.partition)
                               .arg(options.config);
}

bool OpenEditor(const Options& options)
{
    IClassFactory* factory = nullptr;
    _BusinessRules* rules = nullptr;
    if (DllGetClassObject(CLSID_BusinessRules, IID_IClassFactory, reinterpret_cast<void**>(&factory)) != S_OK)
        return false;
    const HRESULT made = factory->CreateInstance(nullptr, IID__BusinessRules, reinterpret_cast<void**>(&rules));
    factory->Release();
    if (made != S_OK)
        return false;
    VARIANT_BOOL result = VARIANT_FALSE;
    rules->ShowNodeEditor(options.config, options.partition, options.node, &result);
    rules->Release();
    return true;
}

QStringList Texts(int argc, char** argv)
{
    QStringList texts;
    for (int i = 0; i < argc; ++i)
        texts << QString::fromLocal8Bit(argv[i]);
    return texts;
}

} // namespace

int main(int argc, char** argv)
{
    // Options are read first: the application must be told that there is no display before it starts.
    Options options = ReadOptions(Texts(argc, argv));
    const qor::Display display;
    const auto ownPicture = PrepareDisplay(display, options);
    PrepareData(options.dataFolder);
    const QApplication application(argc, argv);
    std::unique_ptr<Picture> picture;
    if (!options.picture.isEmpty())
        picture = std::make_unique<Picture>(options.picture);
    ShownDialogs dialogs;
    QCoreApplication::instance()->installEventFilter(&dialogs);
    const bool opened = OpenEditor(options);
    if (!dialogs.Any())
        TellNothingShown(options);
    const bool taken = picture && picture->Taken();
    if (ownPicture)
        ownPicture->setAutoRemove(!taken);
    return opened && dialogs.Any() && (taken || !picture) ? 0 : 1;
}
