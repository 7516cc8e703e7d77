#include "platform/xdg/autostart.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestAutostart : public QObject
{
    Q_OBJECT

private slots:
    void entryIsOwn()
    {
        const QTemporaryDir home;
        qputenv("XDG_CONFIG_HOME", home.path().toLocal8Bit());
        const QString path = home.path() + u"/autostart/snapworkbench.desktop"_s;
        Autostart item;
        item.remove();
        QVERIFY(!item.contains());
        item.insert();
        QVERIFY(item.contains());
        QFile entry(path);
        QVERIFY(entry.open(QIODevice::ReadWrite));
        const QByteArray text = entry.readAll();
        QVERIFY(text.startsWith("[Desktop Entry]\n"));
        QVERIFY(text.contains(QCoreApplication::applicationFilePath().toUtf8()));
        // The entry of a program that lies elsewhere is not this one's.
        entry.resize(0);
        entry.write("[Desktop Entry]\nExec=\"/elsewhere/SnapWorkbench\"\n");
        entry.close();
        QVERIFY(!item.contains());
        item.insert();
        QVERIFY(item.contains());
        // One that the desktop's own settings have switched off does not start the program.
        for (const char *off : {"Hidden=true\n", "X-GNOME-Autostart-enabled = false\n"}) {
            QByteArray changed = text;
            changed.replace("X-GNOME-Autostart-enabled=true\n", off);
            QVERIFY(entry.open(QIODevice::WriteOnly));
            entry.write(changed);
            entry.close();
            QVERIFY(!item.contains());
            item.insert();
            QVERIFY(item.contains());
        }
        item.remove();
        QVERIFY(!QFile::exists(path));

        // A file where the folder should be: nothing happens, and nothing is lost.
        QVERIFY(QDir(home.path()).rmdir(u"autostart"_s));
        QFile inTheWay(home.path() + u"/autostart"_s);
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        item.insert();
        QVERIFY(!item.contains());
        QVERIFY(QFileInfo(inTheWay).isFile());
    }
};

QTEST_MAIN(TestAutostart)
#include "test_autostart.moc"
