#include "config/applicationrecord.h"
#include "config/resourcefile.h"
#include "config/settings.h"
#include "config/texthelpers.h"
#include "config/xmlstore.h"
#include "scratch.h"

#include <QDir>
#include <QProcess>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

namespace {

// States of a file other than its bytes: a null array is a missing file.
const QByteArray s_folder = "(folder)";

const QString s_shipped = u"SnapWorkbench.xml"_s;
const QString s_marker = u"data/App/Exceptionfile.rtf"_s;
const QString s_resource = u"data/App/SnapWorkbench.xml"_s;
const QString s_backup = u"data/App/SnapWorkbench.~xml"_s;

QByteArray xml(const QByteArray &version, const QByteArray &content)
{
    return "<Galeway ver='" + version + "'><Config><" + content + "/></Config></Galeway>";
}

// What the program does from its start to its end, with a setting changed in between.
int runOnce(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    ReadProfile();
    CreateFolder(QFile::encodeName(userDataFolder()));
    if (!ProcessResourceFile(QString()))
        return 1;
    if (*argv[2])
        SetConfigString(u"K"_s, QString::fromUtf8(argv[2]));
    SaveAllXmlDocument();
    return 0;
}

}  // namespace

// Every start is a process of its own, a copy of this program beside its own shipped files.
class TestResourceFile : public QObject
{
    Q_OBJECT

    std::unique_ptr<Scratch> m_scratch;

    void put(const QString &name, const QByteArray &state) const
    {
        if (state == s_folder)
            QVERIFY(QDir().mkpath(m_scratch->path(name + u"/kept"_s)));
        else if (!state.isNull())
            QFile::setPermissions(m_scratch->put(name, state), QFile::ReadOwner);
    }

    // How many starts in a row die, of SIGABRT and with the marker left behind.
    int deaths(int limit, const QString &setting = {}) const
    {
        QProcess process;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_DATA_HOME"_s, m_scratch->path(u"data"_s));
        process.setProcessEnvironment(environment);
        for (int count = 0; count < limit; ++count) {
            process.start(m_scratch->path(u"program"_s), {u"--start"_s, setting});
            process.waitForFinished();
            const bool died = process.exitStatus() == QProcess::CrashExit;
            if (process.exitCode() != (died ? SIGABRT : 0) ||
                QFileInfo(m_scratch->path(s_marker)).isFile() != died)
                return -1;
            if (!died)
                return count;
        }
        return limit;
    }

private slots:
    void init()
    {
        m_scratch = std::make_unique<Scratch>();
        QVERIFY(
            QFile::copy(QCoreApplication::applicationFilePath(), m_scratch->path(u"program"_s)));
        QVERIFY(QDir().mkpath(m_scratch->path(u"data/App"_s)));
        // The company is too long for its array.
        put(u"gwprofile_r.data"_s,
            "[gwprofile_r]\napp=App,\ncompany=" + QByteArray(900, 'c') + ",\n");
    }

    void starts_data()
    {
        for (const char *column : {"marker", "resource", "backup", "expected"})
            QTest::addColumn<QByteArray>(column);
        QTest::addColumn<int>("dead");
        const QByteArray shipped = xml("5", "Shipped");
        const QByteArray user = xml("5", "User");
        const QByteArray newer = xml("6", "Newer");
        const QByteArray older = xml("4", "Older");
        const QByteArray saved = xml("5", "Saved");
        const QByteArray cut = user.chopped(9);
        const QByteArray empty = "";
        const QByteArray none;
        // clang-format off
        QTest::newRow("first start")               << none     << none     << none     << shipped << 0;
        QTest::newRow("kept")                      << none     << user     << saved    << user    << 0;
        QTest::newRow("kept, newer")               << none     << newer    << none     << newer   << 0;
        QTest::newRow("older: replaced")           << none     << older    << saved    << shipped << 0;
        QTest::newRow("no version: replaced")      << none     << "<Galeway/>"_ba << saved << shipped << 0;
        QTest::newRow("missing: restored")         << none     << none     << saved    << saved   << 0;
        QTest::newRow("empty: restored")           << none     << empty    << saved    << saved   << 0;
        QTest::newRow("empty: installed")          << none     << empty    << none     << shipped << 0;
        QTest::newRow("old backup: replaced")      << none     << none     << older    << shipped << 0;
        QTest::newRow("marker: restored")          << empty    << user     << saved    << saved   << 0;
        QTest::newRow("marker: removed")           << empty    << user     << none     << shipped << 0;
        QTest::newRow("marker: bad, restored")     << "x"_ba   << "junk"_ba << saved   << saved   << 0;
        QTest::newRow("cut short: dies, restored") << none     << cut      << saved    << saved   << 1;
        QTest::newRow("no XML: dies, installed")   << none     << "junk"_ba << none    << shipped << 1;
        QTest::newRow("bad backup: dies twice")    << none     << cut      << cut      << shipped << 2;
        QTest::newRow("folder: restored")          << none     << s_folder << saved    << saved   << 0;
        QTest::newRow("folders: installed")        << none     << s_folder << s_folder << shipped << 0;
        QTest::newRow("folder for the marker")     << s_folder << user     << s_folder << user    << 0;
        // clang-format on
    }
    void starts()
    {
        QFETCH(QByteArray, marker);
        QFETCH(QByteArray, resource);
        QFETCH(QByteArray, backup);
        QFETCH(QByteArray, expected);
        put(s_shipped, xml("5", "Shipped"));
        put(s_marker, marker);
        put(s_resource, resource);
        put(s_backup, backup);

        QTEST(deaths(5), "dead");
        QCOMPARE(m_scratch->get(s_resource), expected);
        QCOMPARE(m_scratch->get(s_backup), expected);
        // A copy can be written even if its source can't; a file that was kept is as it was.
        const auto canWrite = [this](const QString &name) {
            return bool(QFile::permissions(m_scratch->path(name)) & QFile::WriteOwner);
        };
        QVERIFY(canWrite(s_backup));
        QCOMPARE(canWrite(s_resource), resource != expected);
        const QDir folder(m_scratch->path(u"data/App"_s));
        QCOMPARE(folder.entryList({u"*.1"_s}, QDir::Dirs).size(),
                 QList({marker, resource, backup}).count(s_folder));
    }

    void settingsSurvive()
    {
        put(s_shipped, xml("5", "K data='shipped'"));
        QCOMPARE(deaths(1, u"changed"_s), 0);
        QCOMPARE(deaths(1), 0);
        QVERIFY(m_scratch->get(s_backup).contains("\"changed\""));
        // The settings of an older file go, also those that were read from it.
        QVERIFY(QFile::remove(m_scratch->path(s_shipped)));
        put(s_shipped, xml("6", "L data='shipped'"));
        QCOMPARE(deaths(1, u"again"_s), 0);
        QVERIFY(m_scratch->get(s_resource).contains("<L data=\"shipped\""));
        QCOMPARE(deaths(1), 0);
        // As if the disk had filled up while settings were saved.
        QVERIFY(QFile::resize(m_scratch->path(s_resource), 50));
        QCOMPARE(deaths(5), 1);
        QVERIFY(m_scratch->get(s_resource).contains("\"again\""));
    }

    void aBadShippedFileMayBeMended()
    {
        put(s_shipped, "junk");
        put(s_resource, xml("5", "User"));
        put(s_backup, xml("5", "Saved"));
        QCOMPARE(deaths(2), 2);
        QCOMPARE(m_scratch->get(s_resource), xml("5", "Saved"));
        QCOMPARE(deaths(1), 1);
        QVERIFY(QFile::remove(m_scratch->path(s_shipped)));
        put(s_shipped, xml("5", "Mended"));
        QCOMPARE(deaths(1), 0);
        QCOMPARE(m_scratch->get(s_resource), xml("5", "Mended"));
    }
};

int main(int argc, char **argv)
{
    if (argc > 2 && qstrcmp(argv[1], "--start") == 0)
        return runOnce(argc, argv);
    QCoreApplication app(argc, argv);
    TestResourceFile test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_resourcefile.moc"
