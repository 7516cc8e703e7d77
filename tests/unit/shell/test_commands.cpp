#include "fakedesktop.h"
#include "rows.h"
#include "shell/capturerefusal.h"
#include "shell/commands.h"

#include <QFile>
#include <QImageReader>
#include <QMenu>
#include <QTest>

using namespace Qt::StringLiterals;

class TestCommands : public QObject
{
    Q_OBJECT

private slots:
    // What the desktop entry promises, the program keeps.
    void desktopEntry()
    {
        QFile file(
            QFINDTESTDATA("../../../packaging/org.example.brenvale.SnapWorkbench.desktop.in"));
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
        const QList<QByteArray> read = QImageReader::supportedMimeTypes()
                                       << QByteArray("image/openraster");
        for (const QString &type : list(u"MimeType"_s))
            QVERIFY2(read.contains(type.toLatin1()), qPrintable(type));
    }

    // Greyed where the desktop lacks what it needs, and the hint says why; who orders it by another
    // way is told the same.
    void askTheDesktop()
    {
        using enum Ability;
        const FakeDesktop desktop;
        const QList<std::pair<QString, GrabCommand>> grabs{
            {u"Capture Rectangular"_s, GrabCommand::Rectangle},
            {u"Capture Ellipse"_s, GrabCommand::Ellipse},
            {u"Capture Arbitrary"_s, GrabCommand::Polygon},
            {u"Capture Full Screen"_s, GrabCommand::Screen},
            {u"Capture Full Screen with Countdown Timer"_s, GrabCommand::Countdown},
            {u"Select Window"_s, GrabCommand::Window},
            {u"All Windows"_s, GrabCommand::Windows},
            {u"Capture Menu"_s, GrabCommand::Menu},
            {u"Show Snapworkbench"_s, GrabCommand::Show}};
        // The last so many of them but for the very last.
        const auto check = [&](const QByteArray &row, AbilitySet lacking, qsizetype refused) {
            services().abilities = {};
            services().abilities.withhold(lacking, u"why not"_s);
            QMenu menu;
            fillTrayMenu(menu);
            for (qsizetype i = 0; i < grabs.size(); ++i) {
                const QString text = grabs.at(i).first;
                const bool isRefused = i < 8 && i >= 8 - refused;
                const QByteArray name = row + ", " + text.toLatin1();
                const QList<QAction *> items = menu.actions();
                const auto item =
                    std::find_if(items.begin(), items.end(),
                                 [&](const QAction *action) { return action->text() == text; });
                expect(name, (*item)->isEnabled(), !isRefused);
                expect(name, (*item)->toolTip().contains(u"why not"_s), isRefused);
                expect(name, captureRefusal(grabs.at(i).second),
                       isRefused ? u"why not"_s : QString());
            }
        };
        check("all there", {}, 0);
        check("no pictures", Pictures, 8);
        check("no other windows", everyAbility & ~AbilitySet(Pictures), 3);
        check("windows untold", WindowList, 2);
        check("no menus", OpenMenus, 1);
    }

    void callsBeforeTheWindow()
    {
        const ApplicationBus::Handlers handlers = busCommands();
        handlers.activate();
        handlers.open({u"/nowhere.png"_s},
                      [](const QStringList &troubles) { QVERIFY(!troubles.isEmpty()); });
        for (const auto &action : handlers.actions)
            action();
    }
};

QTEST_MAIN(TestCommands)
#include "test_commands.moc"
