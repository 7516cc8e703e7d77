#include "snapwb/commandline.h"

#include <QCommandLineParser>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

const QStringList s_kinds{u"region"_s, u"ellipse"_s, u"polygon"_s, u"screen"_s, u"monitor"_s,
                          u"window"_s, u"active"_s,  u"scroll"_s,  u"last"_s};

CommandLine wrong(const QString &text) { return {.text = text}; }

CommandLine tooMuch(const QString &word)
{
    return wrong(SnapWb::tr("\"%1\" is one word too many.").arg(word));
}

void addOptions(QCommandLineParser &parser)
{
    parser.addOptions({
        {{u"h"_s, u"help"_s}, SnapWb::tr("Show this help.")},
        {{u"v"_s, u"version"_s}, SnapWb::tr("Show the version.")},
        {u"output"_s, SnapWb::tr("Write the picture to FILE, a PNG file; - is standard output."),
         u"FILE"_s},
        {u"force"_s, SnapWb::tr("Replace FILE if there is one.")},
        {u"copy"_s, SnapWb::tr("Copy the picture to the clipboard.")},
        {u"delay"_s, SnapWb::tr("Wait N seconds before."), u"N"_s},
        {u"pointer"_s, SnapWb::tr("Show the pointer in the picture.")},
    });
    parser.addPositionalArgument(
        u"grab KIND"_s,
        SnapWb::tr("Take a picture: %1. With neither --output nor --copy it opens in a tab. "
                   "\"window\" and \"scroll\" begin the same: a click takes the window, and "
                   "Ctrl+click or Return all that scrolls in it.")
            .arg(s_kinds.join(u", "_s)));
    parser.addPositionalArgument(u"open FILE..."_s,
                                 SnapWb::tr("Open picture files, each in a tab."));
    parser.addPositionalArgument(u"state"_s, SnapWb::tr("Tell how far a grab has come."));
}

QString usage()
{
    return SnapWb::tr("Usage:") +
           u"\n  snapwb grab KIND [--output FILE [--force]] [--copy] [--delay N] [--pointer]"
           "\n  snapwb open FILE..."
           "\n  snapwb state\n"_s;
}

CommandLine grab(const QCommandLineParser &parser, const QStringList &kinds)
{
    if (kinds.isEmpty() || !s_kinds.contains(kinds.first()))
        return wrong(SnapWb::tr("One kind of picture is needed: %1.").arg(s_kinds.join(u", "_s)));
    if (kinds.size() > 1)
        return tooMuch(kinds.at(1));
    const bool copies = parser.isSet(u"copy"_s);
    CommandLine line{.command = CommandLine::Command::Grab,
                     .output = parser.value(u"output"_s),
                     .replaces = parser.isSet(u"force"_s)};
    for (const QString &option : {u"output"_s, u"delay"_s}) {
        if (parser.values(option).size() > 1)
            return wrong(SnapWb::tr("--%1 can be there only once.").arg(option));
    }
    if (line.replaces && !parser.isSet(u"output"_s))
        return wrong(SnapWb::tr("--force belongs to --output."));
    // What is wrong with a folder is not how it ends.
    if (parser.isSet(u"output"_s) && line.output != u"-" && !QFileInfo(line.output).isDir() &&
        QFileInfo(line.output).suffix().toLower() != u"png")
        return wrong(SnapWb::tr("\"%1\" does not end with .png, and other formats are not written.")
                         .arg(line.output));
    line.options = {{u"kind"_s, kinds.first()},
                    {u"copy"_s, copies},
                    {u"tab"_s, !copies && line.output.isEmpty()}};
    // What is not asked for is as the preferences say.
    if (parser.isSet(u"pointer"_s))
        line.options.insert(u"pointer"_s, true);
    if (parser.isSet(u"delay"_s)) {
        bool isNumber = false;
        const int seconds = parser.value(u"delay"_s).toInt(&isNumber);
        constexpr int s_longest = 24 * 60 * 60;
        if (!isNumber || seconds < 0 || seconds > s_longest)
            return wrong(
                SnapWb::tr("The delay is a number of seconds, from 0 to %1.").arg(s_longest));
        line.options.insert(u"delay"_s, seconds);
    }
    return line;
}

}  // namespace

CommandLine commandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(arguments))
        return wrong(parser.errorText());
    using enum CommandLine::Command;
    // The parser's own line knows one command at the most.
    if (parser.isSet(u"help"_s))
        return {.command = Tell, .text = usage() + parser.helpText().section(u'\n', 1)};
    if (parser.isSet(u"version"_s))
        return {.command = Tell, .text = u"snapwb " SNAP_VERSION "\n"_s};
    QStringList words = parser.positionalArguments();
    const QString command = words.isEmpty() ? QString() : words.takeFirst();
    if (command == u"grab")
        return grab(parser, words);
    if (!parser.optionNames().isEmpty())
        return wrong(
            SnapWb::tr("The option --%1 belongs to \"grab\".").arg(parser.optionNames().first()));
    if (command == u"open" && !words.isEmpty())
        return {.command = Open, .files = words};
    if (command == u"state")
        return words.isEmpty() ? CommandLine{.command = State} : tooMuch(words.first());
    return wrong(
        SnapWb::tr("\"grab KIND\", \"open FILE...\" or \"state\" is needed; --help tells more."));
}
