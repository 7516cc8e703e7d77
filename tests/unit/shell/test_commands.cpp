#include "shell/commands.h"

#include <QFile>
#include <QImageReader>
#include <QTest>

using namespace Qt::StringLiterals;

class TestCommands : public QObject
{
    Q_OBJECT

private slots:
    // What the desktop entry promises, the program keeps.
    void desktopEntry()
    {
        QFile file(QFINDTESTDATA("../../../packaging/org.example.brenvale.SnapWorkbench.desktop"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QMap<QString, QString> values;  // by section and key
        QString section;
        for (const QString &line : QString::fromUtf8(file.readAll()).split(u'\n')) {
            if (line.startsWith(u'['))
                section = line.mid(1).chopped(1);
            else
                values.insert(section + u'/' + line.section(u'=', 0, 0), line.section(u'=', 1));
        }
        const auto list = [&](const QString &key) {
            return values.value(u"Desktop Entry/"_s + key).split(u';', Qt::SkipEmptyParts);
        };
        QStringList actions = list(u"Actions"_s);
        for (const QString &action : actions)
            QVERIFY(values.value(u"Desktop Action %1/Exec"_s.arg(action))
                        .endsWith(u"ActivateAction %1 [] {}"_s.arg(action)));
        QStringList known = busCommands().actions.keys();
        known.sort();
        actions.sort();
        QCOMPARE(actions, known);
        QVERIFY(!list(u"MimeType"_s).isEmpty());
        for (const QString &type : list(u"MimeType"_s))
            QVERIFY2(QImageReader::supportedMimeTypes().contains(type.toLatin1()),
                     qPrintable(type));
    }

    void callsBeforeTheWindow()
    {
        const ApplicationBus::Handlers handlers = busCommands();
        handlers.activate();
        handlers.open({u"/nowhere.png"_s});
        for (const auto &action : handlers.actions)
            action();
    }
};

QTEST_MAIN(TestCommands)
#include "test_commands.moc"
