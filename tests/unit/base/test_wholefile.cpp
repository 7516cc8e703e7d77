// Files written whole or not at all: what of the old file stays, and kills at every system call.

#include "base/fileidentity.h"
#include "base/wholefile.h"
#include "killed.h"
#include "rows.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <array>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>

using namespace Qt::StringLiterals;

namespace {

const QByteArray s_old(70'001, 'o');
const QByteArray s_new(100'003, 'n');

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

bool fill(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

}  // namespace

class TestWholeFile : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        WholeFile::setSpareFolder(at(u"spare"_s));
    }

    // A chain of links, the mode, an attribute; and a file with two names stays one file.
    void keeps()
    {
        QVERIFY(fill(at(u"file"_s), s_old) && fill(at(u".file.part"_s), s_old));
        QVERIFY(QDir().mkpath(at(u"folder"_s)));
        QVERIFY(QFile::link(u"../file"_s, at(u"folder/link"_s)));
        QVERIFY(QFile::link(u"folder/link"_s, at(u"link"_s)));
        const QByteArray file = QFile::encodeName(at(u"file"_s));
        QCOMPARE(chmod(file.constData(), 0640), 0);
        const bool hasAttributes = setxattr(file.constData(), "user.note", "kept", 4, 0) == 0;
        const auto before = FileIdentity::of(at(u"link"_s));
        QVERIFY(WholeFile(at(u"link"_s)).write(s_new));
        QCOMPARE(contentOf(at(u"file"_s)), s_new);
        QVERIFY(QFileInfo(at(u"link"_s)).isSymLink() &&
                QFileInfo(at(u"folder/link"_s)).isSymLink());
        struct stat written {
        };
        QCOMPARE(stat(file.constData(), &written), 0);
        QCOMPARE(written.st_mode & 07777, 0640U);
        std::array<char, 5> note{};
        if (hasAttributes) {
            QCOMPARE(getxattr(file.constData(), "user.note", note.data(), 4), 4);
            QCOMPARE(note.data(), "kept");
        }
        QVERIFY(FileIdentity::of(at(u"file"_s)) != before);
        QCOMPARE(contentOf(at(u".file.part"_s)), s_old);  // somebody else's

        QVERIFY(giveSecondName(u"file"_s));
        QVERIFY(WholeFile(at(u"other"_s)).write(s_old));
        QCOMPARE(contentOf(at(u"file"_s)), s_old);
        QVERIFY(FileIdentity::of(at(u"file"_s)) == FileIdentity::of(at(u"other"_s)));
        QVERIFY(spares().isEmpty());

        // One that is not there yet is made, also behind a link.
        QVERIFY(QFile::link(u"later"_s, at(u"ahead"_s)));
        QVERIFY(WholeFile(at(u"ahead"_s)).write(s_new));
        QCOMPARE(contentOf(at(u"later"_s)), s_new);
    }

    // A full disk, as the system's limit for the size of files plays it; nothing but the old bytes
    // is left.
    void fails()
    {
        QVERIFY(fill(at(u"file"_s), s_old));
        QVERIFY(fill(at(u"linked"_s), s_old) && giveSecondName(u"linked"_s));
        signal(SIGXFSZ, SIG_IGN);
        rlimit usual{};
        getrlimit(RLIMIT_FSIZE, &usual);
        const rlimit small{static_cast<rlim_t>(s_old.size() + 1000), usual.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
        for (const QString &name : {u"file"_s, u"linked"_s, u"none"_s}) {
            WholeFile file(at(name));
            QVERIFY(!file.write(s_new));
            QVERIFY(!file.error().isEmpty());
        }
        setrlimit(RLIMIT_FSIZE, &usual);
        QCOMPARE(contentOf(at(u"file"_s)), s_old);
        QCOMPARE(contentOf(at(u"linked"_s)), s_old);
        QVERIFY(spares().isEmpty());
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden, QDir::Name),
                 QStringList({u"file"_s, u"linked"_s, u"other"_s}));

        QVERIFY(QFile::link(u"round"_s, at(u"round"_s)));
        QVERIFY(!WholeFile(at(u"round"_s)).write(s_new));
        QVERIFY(!WholeFile(m_folder->path()).write(s_new));
        QVERIFY(!WholeFile(at(u"no/such"_s)).write(s_new));
    }

    void killedAnywhere()
    {
        const auto check = [&](const QByteArray &row, const QByteArray &before, bool linked) {
            init();
            const QString path = at(u"file"_s);
            const auto prepare = [&] {
                // What a kill has left between the last two steps.
                for (const QString &left :
                     QDir(m_folder->path()).entryList({u".*.part"_s}, QDir::Hidden | QDir::Files))
                    QFile::remove(at(left));
                QFile::remove(path);
                QFile::remove(at(u"other"_s));
                return before.isNull() ||
                       (fill(path, before) && (!linked || giveSecondName(u"file"_s)));
            };
            const QByteArray untouched = before.isNull() ? contentOf(at(u"none"_s)) : before;
            QSet<QByteArray> seen;
            int call = 0;
            const auto write = [&] {
                WholeFile file(path);
                const qsizetype piece = s_new.size() / 2;
                if (file.append(s_new.left(piece)) && file.append(s_new.mid(piece)))
                    file.commit();
            };
            for (; prepare() && killedAt(call, write); ++call) {
                // What is written in place may be cut off: the next start finishes it.
                if (!linked)
                    QVERIFY2(contentOf(path) == untouched || contentOf(path) == s_new,
                             row + ", call " + QByteArray::number(call));
                QVERIFY2(WholeFile::finishWrites().isEmpty(), row);
                const QByteArray content = contentOf(path);
                QVERIFY2(content == untouched || content == s_new,
                         row + ", call " + QByteArray::number(call));
                QVERIFY2(spares().isEmpty(), row);
                seen.insert(content);
            }
            QVERIFY2(call > 5, row);
            expect(row, seen.size(), 2);
            expect(row, contentOf(path), s_new);
        };
        check("made", QByteArray(), false);
        check("replaced", s_old, false);
        check("in place, longer", s_old, true);
        check("in place, shorter", QByteArray(200'000, 'o'), true);
    }

    void tellsWhatCannotBeFinished()
    {
        const auto check = [&](const QByteArray &row, const QString &change) {
            init();
            cutOff();
            const QByteArray theirs("theirs");
            if (change != u"written into")
                QVERIFY2(QFile::remove(at(u"file"_s)), row);
            if (change != u"gone")
                QVERIFY2(fill(at(u"file"_s), theirs), row);
            const QList<WholeFile::Unfinished> told = WholeFile::finishWrites();
            expect(row, told.size(), 1);
            expect(row, told.first().path, at(u"file"_s));
            expect(row, contentOf(told.first().copy), s_new);
            expect(row, contentOf(at(u"file"_s)),
                   change == u"gone" ? contentOf(at(u"none"_s)) : theirs);
            QVERIFY2(WholeFile::finishWrites().isEmpty(), row);
            expect(row, contentOf(told.first().copy), s_new);
        };
        check("gone", u"gone"_s);
        check("another file", u"another"_s);
        check("another program wrote into it", u"written into"_s);
    }

private:
    QString at(const QString &name) const { return m_folder->filePath(name); }
    QStringList spares() const
    {
        return QDir(at(u"spare"_s)).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    bool giveSecondName(const QString &name) const
    {
        return link(QFile::encodeName(at(name)).constData(),
                    QFile::encodeName(at(u"other"_s)).constData()) == 0;
    }
    /// A file with a second hard link, which is written in place; a write of it is cut off with
    /// the new bytes in the spare folder and part of them in the file.
    void cutOff()
    {
        QVERIFY(fill(at(u"file"_s), s_old) && giveSecondName(u"file"_s));
        for (int call = 0; contentOf(at(u"file"_s)) == s_old; ++call) {
            QDir(at(u"spare"_s)).removeRecursively();
            QVERIFY(killedAt(call, [&] { WholeFile(at(u"file"_s)).write(s_new); }));
        }
        QCOMPARE(spares().size(), 1);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(TestWholeFile)
#include "test_wholefile.moc"
