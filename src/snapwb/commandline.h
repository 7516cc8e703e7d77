#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <QVariantMap>

/// Whose name this program's texts are translated under.
class SnapWb
{
    Q_DECLARE_TR_FUNCTIONS(SnapWb)
};

/// What the user has typed.
struct CommandLine {
    enum class Command {
        Wrong,  ///< `text` says why
        Tell,   ///< only to show `text`
        Grab,
        Open,
        State,
    };

    Command command = Command::Wrong;
    QString text{};
    QVariantMap options{};  ///< of the grab, as the program takes them
    QString output{};       ///< a file for the picture, "-" for standard output; empty for none
    bool replaces = false;  ///< the file, if there is one
    QStringList files{};    ///< to open
};

/// `arguments` begin with the name of the program.
CommandLine commandLine(const QStringList &arguments);
