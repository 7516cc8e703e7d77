#include "scrollprogram.h"

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

ScrollProgram ScrollProgram::start(TestDesktop &desktop, const QString &toolkit,
                                   const QStringList &arguments, bool isTold, qreal scale)
{
    QProcessEnvironment environment = desktop.environment();
    if (isTold)
        environment.remove(u"NO_AT_BRIDGE"_s);
    environment.insert(u"QT_SCALE_FACTOR"_s, QString::number(scale));
    environment.insert(u"GDK_SCALE"_s, QString::number(scale));
    environment.insert(u"GSK_RENDERER"_s, u"cairo"_s);
    environment.insert(u"WEBKIT_DISABLE_COMPOSITING_MODE"_s, u"1"_s);
    // The system's own Python has the toolkit's modules.
    QProcess *process =
        toolkit == u"qt"
            ? desktop.start(QStringLiteral(SNAP_SCROLL), arguments, environment)
            : desktop.start(u"/usr/bin/python3"_s,
                            QStringList{QStringLiteral(SNAP_SCROLL_GTK)} + arguments, environment);
    if (!process || !waitFor([&] { return process->canReadLine(); }))
        return {};
    const QList<QByteArray> told = process->readLine().simplified().split(' ');
    if (told.size() != 6)
        return {};
    return {.process = process,
            .view = {told[1].toInt(), told[2].toInt(), told[3].toInt(), told[4].toInt()},
            .header = told[5].toInt()};
}

bool openPick(TestDesktop &desktop, SnapWorkbench &program, bool isTold)
{
    const auto before = desktop.windows();
    const xcb_window_t front = desktop.activeWindow();
    desktop.key(XK_w, {XK_Control_L, XK_Alt_L});
    const auto question = desktop.waitForNewWindow(before);
    if (!question.id || !desktop.waitForFocus(question))
        return false;
    if (isTold) {
        desktop.key(XK_Return);
        if (!program.waitForState(u"Idle"_s) ||
            !waitFor([&] { return desktop.activeWindow() == front; }))
            return false;
        desktop.key(XK_w, {XK_Control_L, XK_Alt_L});
    } else {
        desktop.key(XK_Tab);
        desktop.key(XK_space);
    }
    return program.waitForState(u"Picking"_s);
}
