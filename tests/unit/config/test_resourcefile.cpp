// Each start is a process of its own, forked from this one: a copy of the test in a folder of its
// own, beside its own shipped files.

#include "base/paths.h"
#include "config/applicationrecord.h"
#include "config/resourcefile.h"
#include "config/resourceupgrade.h"
#include "config/settings.h"
#include "config/xmlstore.h"
#include "killed.h"
#include "rows.h"
#include "scratch.h"

#include <QDir>
#include <QProcess>

#include <csignal>
#include <random>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

using Files = QMap<QString, QByteArray>;

// States of a file other than its bytes: a null array is a missing file.
const QByteArray s_folder = "(folder)";

const QString s_marker = u"App/Exceptionfile.rtf"_s;
const QString s_resource = u"App/SnapWorkbench.xml"_s;
const QString s_backup = u"App/SnapWorkbench.~xml"_s;

QString besideProgram(const QString &name)
{
    return QCoreApplication::applicationDirPath() + u'/' + name;
}

void put(const QString &path, const QByteArray &bytes)
{
    QFile::remove(path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

void ship(const QByteArray &bytes) { put(besideProgram(u"SnapWorkbench.xml"_s), bytes); }

QByteArray xml(const QByteArray &version, const QByteArray &content)
{
    return "<Galeway ver='" + version + "'><Config><" + content + "/></Config></Galeway>";
}

// As the program writes it.
QByteArray document(const QByteArray &content)
{
    return R"(<?xml version="1.0" encoding="UTF-8"?>)"
           "\n<Galeway ver=\"5\">\n <Config>\n  " +
           content + "\n </Config>\n</Galeway>\n";
}

void begin()
{
    ReadProfile();
    CreateFolder(QFile::encodeName(userDataFolder()));
    if (!ProcessResourceFile(QString()))
        _exit(1);
}

void fillDisk()
{
    signal(SIGXFSZ, SIG_IGN);
    const rlimit none{};
    setrlimit(RLIMIT_FSIZE, &none);
}

int statusOf(const std::function<void()> &work)
{
    const pid_t child = fork();
    if (child == 0) {
        signal(SIGABRT, SIG_DFL);
        work();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}

}  // namespace

class TestResourceFile : public QObject
{
    Q_OBJECT

    std::unique_ptr<Scratch> m_scratch;

    void putState(const QString &name, const QByteArray &state) const
    {
        const QString path = m_scratch->path(name);
        QFile::remove(path);
        if (state == s_folder)
            QVERIFY(QDir().mkpath(path + u"/kept"_s));
        else if (!state.isNull())
            QFile::setPermissions(m_scratch->put(name, state), QFile::ReadOwner);
    }

    // How many starts in a row die, of SIGABRT and with the marker left behind. -1 when one ends in
    // another way.
    int deaths(int limit, const QString &setting = {}) const
    {
        for (int count = 0; count < limit; ++count) {
            const int status = statusOf([&] {
                begin();
                if (!setting.isEmpty())
                    SetConfigString(u"K"_s, setting);
                SaveResourceFile();
            });
            const bool died = WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT;
            if ((!died && status != 0) || QFileInfo(m_scratch->path(s_marker)).isFile() != died)
                return -1;
            if (!died)
                return count;
        }
        return limit;
    }

    // The settings in the resource file and the backup.
    QStringList settings() const
    {
        QStringList result;
        for (const QString &name : {s_resource, s_backup}) {
            const auto file = ReadXmlDocument(m_scratch->path(name));
            result.append(
                file
                    ? PlacesOf(*file).value(u"Galeway\\Config\\K"_s).attribute(u"data"_s, u"none"_s)
                    : u"no file"_s);
        }
        return result;
    }

    Files files() const
    {
        Files result;
        const QDir folder(m_scratch->path(u"App"_s));
        for (const QString &name : folder.entryList(QDir::Files | QDir::Hidden))
            result.insert(u"App/"_s + name, m_scratch->get(u"App/"_s + name));
        return result;
    }

    // These and no others.
    bool putFiles(const Files &wanted) const
    {
        FreeAllXmlDocument();
        QDir(m_scratch->path(u"App"_s)).removeRecursively();
        const bool isMade = QDir().mkpath(m_scratch->path(u"App"_s));
        for (auto it = wanted.begin(); it != wanted.end(); ++it)
            m_scratch->put(it.key(), *it);
        return isMade;
    }

private slots:
    void init()
    {
        FreeAllXmlDocument();
        m_scratch = std::make_unique<Scratch>();
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_scratch->folder.path()));
        QVERIFY(QDir().mkpath(m_scratch->path(u"App"_s)));
    }
    void cleanup() { FreeAllXmlDocument(); }

    void starts()
    {
        const auto check = [&](const QByteArray &row, const QByteArray &marker,
                               const QByteArray &resource, const QByteArray &backup,
                               const QByteArray &expected, int dead) {
            init();
            ship(xml("5", "Shipped"));
            putState(s_marker, marker);
            putState(s_resource, resource);
            putState(s_backup, backup);

            expect(row, deaths(5), dead);
            expect(row, m_scratch->get(s_resource), expected);
            expect(row, m_scratch->get(s_backup), expected);
            // A copy can be written even if its source can't; a file that was kept is as it was.
            const auto canWrite = [this](const QString &name) {
                return bool(QFile::permissions(m_scratch->path(name)) & QFile::WriteOwner);
            };
            QVERIFY2(canWrite(s_backup), row);
            expect(row, canWrite(s_resource), resource != expected);
            // What stood in the way or could not be read has been set aside.
            const QDir folder(m_scratch->path(u"App"_s));
            expect(row, folder.entryList({u"*.1"_s}, QDir::Dirs).size(),
                   QList({marker, resource, backup}).count(s_folder));
            const QStringList damaged = folder.entryList({u"*.damaged.*"_s}, QDir::Files);
            expect(row, damaged.size(), resource == "junk" || resource.endsWith('<'));
            for (const QString &name : damaged)
                expect(row, m_scratch->get(u"App/"_s + name), resource);
        };
        const QByteArray shipped = xml("5", "Shipped");
        const QByteArray user = xml("5", "User");
        const QByteArray newer = xml("6", "Newer");
        const QByteArray older = xml("4", "Older");
        const QByteArray bare = document("<Shipped/>");
        const QByteArray upgraded = document("<Shipped/>\n  <Older/>");
        const QByteArray saved = xml("5", "Saved");
        const QByteArray cut = user.chopped(9);
        const QByteArray empty = "";
        const QByteArray none;
        check("first start", none, none, none, shipped, 0);
        check("kept", none, user, saved, user, 0);
        check("kept, newer", none, newer, none, newer, 0);
        check("older: upgraded", none, older, saved, upgraded, 0);
        check("no version: upgraded", none, "<Galeway/>"_ba, saved, bare, 0);
        check("missing: restored", none, none, saved, saved, 0);
        check("empty: restored", none, empty, saved, saved, 0);
        check("empty: installed", none, empty, none, shipped, 0);
        check("old backup: upgraded", none, none, older, upgraded, 0);
        check("marker: restored", empty, user, saved, saved, 0);
        check("marker: kept", empty, user, none, user, 0);
        check("marker: bad, restored", "x"_ba, "junk"_ba, saved, saved, 0);
        check("cut short: dies, restored", none, cut, saved, saved, 1);
        check("no XML: dies, installed", none, "junk"_ba, none, shipped, 1);
        check("bad backup: installed", none, cut, cut, shipped, 1);
        check("folder: restored", none, s_folder, saved, saved, 0);
        check("folders: installed", none, s_folder, s_folder, shipped, 0);
        check("folder for the marker", s_folder, user, s_folder, user, 0);
    }

    void settingsSurvive()
    {
        ship(xml("5", "K data='shipped'"));
        QCOMPARE(deaths(1, u"changed"_s), 0);
        QCOMPARE(settings(), QStringList({u"changed"_s, u"changed"_s}));
        // As if another program had cut the file.
        QVERIFY(QFile::resize(m_scratch->path(s_resource), 50));
        QCOMPARE(deaths(5), 1);
        QCOMPARE(settings(), QStringList({u"changed"_s, u"changed"_s}));
        QFile::remove(m_scratch->path(s_backup));
        QVERIFY(QFile::link(u"no/folder"_s, m_scratch->path(s_backup)));
        QCOMPARE(deaths(1, u"again"_s), 0);
        QCOMPARE(settings(), QStringList({u"again"_s, u"no file"_s}));
    }

    // A version 1 file in which everything has been changed.
    void anUpgradeKeepsSettings()
    {
        const QByteArray first = contentOf(shippedInVersion(1));
        QByteArray user = first;
        const qsizetype end = user.indexOf("</Config>");
        user.replace(0, end, user.first(end).replace(" data=\"", " data=\"changed"));
        user.replace("NormalImg=\"skin/BtnMin_normal.png\"", "MaskImg=\"mine\"");
        user.replace("</MainWindow>", "<BtnMine HintString=\"mine\"/></MainWindow>");
        QVERIFY(user.count("mine") == 2 && user.count("changed") > 15);
        QByteArray newer = first;
        newer.replace("ver=\"1\"", "ver=\"2\"")
            .replace("HintString=\"Close\"", "HintString=\"New\"");
        newer.replace("</Config>", "<Later data=\"7\"/></Config>")
            .replace("data=\"test\"", "data=\"2\"");
        newer.replace("HintString=\"Minimize\"", "HintString=\"New\" FontColorDown=\"1\"");
        ship(newer);
        putState(s_resource, user);
        QCOMPARE(deaths(1), 0);
        QCOMPARE(m_scratch->get(u"App/SnapWorkbench.1.xml"_s), user);
        const auto file = ReadXmlDocument(m_scratch->path(s_resource));
        const auto before = ReadXmlDocument(m_scratch->path(u"App/SnapWorkbench.1.xml"_s));
        QVERIFY(file && before);
        const XmlPlaces now = PlacesOf(*file);
        const XmlPlaces then = PlacesOf(*before);
        const auto value = [&](const XmlPlaces &places, const QString &path, const QString &name) {
            return places.value(u"Galeway"_s + path).attribute(name, u"none"_s);
        };
        for (auto it = then.begin(); it != then.end(); ++it) {
            if (it.key().startsWith(u"Galeway\\Config\\"))
                QCOMPARE(now.value(it.key()).attribute(u"data"_s), it->attribute(u"data"_s));
        }
        const QString buttons = u"\\Default\\Buttons\\MainWindow\\"_s;
        QCOMPARE(value(now, {}, u"ver"_s), u"2"_s);
        QCOMPARE(value(now, u"\\Config\\Later"_s, u"data"_s), u"7"_s);
        QCOMPARE(value(now, u"\\Default\\Strings\\test"_s, u"data"_s), u"2"_s);
        QCOMPARE(value(now, buttons + u"BtnClose"_s, u"HintString"_s), u"New"_s);
        QCOMPARE(value(now, buttons + u"BtnMin"_s, u"HintString"_s), u"Minimize"_s);
        QCOMPARE(value(now, buttons + u"BtnMin"_s, u"MaskImg"_s), u"mine"_s);
        QCOMPARE(value(now, buttons + u"BtnMin"_s, u"NormalImg"_s), u"none"_s);
        QCOMPARE(value(now, buttons + u"BtnMin"_s, u"FontColorDown"_s), u"none"_s);
        QCOMPARE(value(now, buttons + u"BtnMine"_s, u"HintString"_s), u"mine"_s);
    }

    // Whoever changes the shipped file raises its version, and puts a copy into the history.
    void everyVersionIsKept()
    {
        const QByteArray shipped = contentOf(QStringLiteral(SNAP_SHIPPED));
        QDomDocument current;
        QVERIFY(current.setContent(shipped));
        const int version = current.documentElement().attribute(u"ver"_s).toInt();
        QVERIFY(version >= 1);
        QCOMPARE(contentOf(shippedInVersion(version)), shipped);
        for (int older = 1; older < version; ++older) {
            const auto file = ReadXmlDocument(shippedInVersion(older));
            QVERIFY(file && file->documentElement().attribute(u"ver"_s).toInt() == older);
        }
    }

    void whatTheFileLacksIsTheShippedOnes()
    {
        const QByteArray content =
            "<Galeway ver='5'><Default><Strings>%1</Strings><Buttons><W><A %2/>"
            "</W></Buttons></Default></Galeway>";
        ship(QByteArray(content)
                 .replace("%1", "<s data='shipped'/>")
                 .replace("<A %2/>",
                          "<A HintString='shipped' Caption='shipped'/><B HintString='shipped'/>"));
        putState(s_resource, QByteArray(content).replace("%1", "").replace("%2", "Caption='own'"));
        begin();
        QObject widget;
        widget.setObjectName(u"W"_s);
        const auto texts = [&] {
            return QStringList({GetString(u"s"_s), GetBtnAttr(&widget, u"A"_s, 1),
                                GetBtnAttr(&widget, u"A"_s, 3), GetBtnAttr(&widget, u"B"_s, 3)});
        };
        QCOMPARE(texts(), QStringList({u"shipped"_s, u"own"_s, {}, u"shipped"_s}));
        for (const QByteArray &damage : {"junk"_ba, QByteArray()}) {
            FreeAllXmlDocument();
            ship(damage);
            QCOMPARE(texts(), QStringList({{}, u"own"_s, {}, {}}));
        }
    }

    void aBadShippedFileMayBeMended()
    {
        ship("junk");
        putState(s_resource, xml("5", "User"));
        putState(s_backup, xml("5", "Saved"));
        QCOMPARE(deaths(3), 3);
        ship(xml("6", "Mended"));
        QCOMPARE(deaths(1), 0);
        QVERIFY(m_scratch->get(s_resource).contains("<Mended/>\n  <Saved/>"));
    }

    void fullDisk()
    {
        const auto check = [&](const QByteArray &row, const QByteArray &marker,
                               const QByteArray &resource, const QByteArray &backup, bool starts,
                               const QString &setting) {
            init();
            ship(xml("5", "K data='shipped'"));
            putState(s_marker, marker);
            putState(s_resource, resource);
            putState(s_backup, backup);
            const int status = statusOf([&] {
                fillDisk();
                ReadProfile();
                const bool isUp = ProcessResourceFile({});
                const bool isTold = !resourceFileProblem().reason.isEmpty();
                SetConfigString(u"K"_s, u"lost"_s);
                // Not written, and still to be written.
                const bool isKept = !SaveResourceFile().isEmpty() && !SaveResourceFile().isEmpty();
                _exit(isUp ? (isKept ? 0 : 2) : (isTold ? 1 : 3));
            });
            expect(row, WEXITSTATUS(status), starts ? 0 : 1);
            expect(row, settings().first(), setting);
            expect(row, deaths(1), 0);
        };
        const QByteArray own = xml("5", "K data='own'");
        const QByteArray none;
        const QByteArray empty = "";
        check("first start", none, none, none, false, u"no file"_s);
        check("usual start", none, own, own, true, u"own"_s);
        check("damaged", empty, own.chopped(9), own, true, u"own"_s);
        check("upgrade", none, xml("4", "K data='own'"), none, true, u"own"_s);
    }

    // Kills at every system call, and where the marker stands a second one at the next start, in
    // each state that the first one can leave.
    void killedAnywhere()
    {
        const auto check = [&](const QByteArray &row, const QByteArray &marker,
                               const QByteArray &resource, bool saves,
                               const QStringList &outcomes) {
            init();
            ship(xml("5", "K data='shipped'"));
            Files before{{s_marker, marker},
                         {s_resource, resource},
                         {s_backup, marker.isNull() ? resource : xml("5", "K data='own'")}};
            before.removeIf([](const auto &file) { return file->isNull(); });
            QSet<QString> seen;
            const auto isWhole = [&] {
                const bool isUp = deaths(1) == 0;
                const QStringList now = settings();
                seen.insert(now.first());
                return isUp && outcomes.contains(now.first()) && now.first() == now.last();
            };
            const auto work = [saves] {
                if (!saves)
                    return begin();
                SetConfigString(u"K"_s, u"new"_s);
                SaveResourceFile();
            };
            const bool isLong = qEnvironmentVariableIsSet("SNAP_LONG");
            constexpr unsigned sample = 20;
            std::mt19937 random(20261122);
            QList<Files> states;
            int call = 0;
            int kills = 0;
            for (;; ++call, ++kills) {
                putFiles(before);
                if (saves)
                    begin();
                if (!killedAt(call, work))
                    break;
                const Files cut = files();
                QVERIFY2(isWhole(), row + ", call " + QByteArray::number(call));
                if (marker.isNull() || states.contains(cut))
                    continue;
                states.append(cut);
                for (int second = 0; putFiles(cut) && killedAt(second, work); ++kills) {
                    QVERIFY2(isWhole(), row + ", calls " + QByteArray::number(call) + ' ' +
                                            QByteArray::number(second));
                    second += isLong ? 1 : 1 + int(random() % sample);
                }
            }
            QVERIFY2(call > 5, row);
            expect(row, seen.size(), outcomes.size());
            qInfo("%d system calls, %d states, %d kills", call, int(states.size()), kills);
        };
        const QByteArray own = xml("5", "K data='own'");
        const QByteArray none;
        const QStringList isOwn{u"own"_s};
        check("first start", none, none, false, QStringList{u"shipped"_s});
        check("usual start", none, own, false, isOwn);
        check("with the marker", ""_ba, own, false, isOwn);
        check("damaged", ""_ba, own.chopped(9), false, isOwn);
        check("upgrade", none, xml("4", "K data='own'"), false, isOwn);
        check("save", none, own, true, QStringList{u"own"_s, u"new"_s});
    }
};

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QString profile = u"gwprofile_r.data"_s;
    if (QFile::exists(besideProgram(profile))) {
        TestResourceFile test;
        return QTest::qExec(&test, argc, argv);
    }
    // Nothing can be started from a memory that is mounted so.
    const Scratch own{QTemporaryDir()};
    // The company is too long for its array.
    own.put(profile, "[gwprofile_r]\napp=App,\ncompany=" + QByteArray(900, 'c') + ",\n");
    const QString copy = own.path(u"program"_s);
    if (!QFile::copy(QCoreApplication::applicationFilePath(), copy))
        return 1;
    return QProcess::execute(copy, QCoreApplication::arguments().mid(1));
}

#include "test_resourcefile.moc"
