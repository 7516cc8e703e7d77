#include "shell/filedialogs.h"

#include "config/applicationrecord.h"
#include "config/filters.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QMessageBox>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

// "png(*.png)" gives "png".
QString formatOf(const QString &filter) { return filter.section(u'(', 0, 0).trimmed(); }

// The toolkit's own looks into each file that the dialog lists, to tell what kind it is, and waits
// for ever in one that is a pipe or a log of the system.
class NameIcons : public QFileIconProvider
{
public:
    QIcon icon(const QFileInfo &file) const override
    {
        return QFileIconProvider::icon(file.isDir() ? Folder : File);
    }
    QString type(const QFileInfo &file) const override
    {
        return file.isDir() ? QFileDialog::tr("Folder") : file.suffix().toUpper();
    }
};

bool mayReplace(QWidget *parent, const QString &path)
{
    if (!QFileInfo::exists(path))
        return true;
    const QString question = QCoreApplication::translate(
        "QFileDialog", "%1 already exists.\nDo you want to replace it?");
    return QMessageBox::warning(
               parent, QString::fromWCharArray(g_AppName), question.arg(QFileInfo(path).fileName()),
               QMessageBox::Yes | QMessageBox::No, QMessageBox::No) == QMessageBox::Yes;
}

// Whether a name ends as a dialog with these filters may return it. Who is asked for one with
// layers gets layers; any other dialog takes the endings of all formats.
bool isWhole(const QString &name, const QString &filters)
{
    return HasSavableEnding(name) &&
           (HasLayeredEnding(name) || filters != GetMacFilter(GetLayeredPictureFilter()));
}

// The name itself, or with the next number that is free. Without the ending of a picture format it
// will get that of `format`.
QString freeName(const QDir &folder, const QString &name, const QString &format)
{
    const QString own = HasSavableEnding(name) ? u'.' + QFileInfo(name).suffix() : QString();
    const QString ending = own.isEmpty() ? u'.' + format : own;
    // A longer number is a year, say, and part of the name.
    static const QRegularExpression s_numbered(u"^(.*) (\\d{1,3})$"_s);
    QString stem = name.chopped(own.size());
    const QRegularExpressionMatch match = s_numbered.match(stem);
    QString result = stem;
    if (match.hasMatch())
        stem = match.captured(1);
    for (int number = match.captured(2).toInt();
         QFileInfo::exists(folder.filePath(result + ending));)
        result = stem + u' ' + QString::number(++number);
    return result + own;
}

}  // namespace

QStringList askOpenFileNames(QWidget *parent, const QString &folder, const QString &filters,
                             QString &selected)
{
    NameIcons icons;
    QFileDialog dialog(parent, QString(), folder, filters);
    dialog.setIconProvider(&icons);
    dialog.setFileMode(QFileDialog::ExistingFiles);
    dialog.selectNameFilter(selected);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    selected = dialog.selectedNameFilter();
    return dialog.selectedFiles();
}

QString askSaveFileName(QWidget *parent, const QString &path, const QString &filters,
                        QString &selected, bool mayExist)
{
    const QString folder = QFileInfo(path).path();
    NameIcons icons;
    QFileDialog dialog(parent, QString(), QDir(folder).exists() ? folder : QDir::homePath(),
                       filters);
    dialog.setIconProvider(&icons);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    const auto useEnding = [&dialog](const QString &filter) {
        dialog.setDefaultSuffix(formatOf(filter));
    };
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, useEnding);
    if (!selected.isEmpty())
        dialog.selectNameFilter(selected);
    useEnding(dialog.selectedNameFilter());
    // The name alone: of a whole path the dialog would cut its own folder off, and not always
    // rightly.
    const QString name = QFileInfo(path).fileName();
    dialog.selectFile(
        mayExist ? name
                 : freeName(dialog.directory(), name, formatOf(dialog.selectedNameFilter())));
    while (dialog.exec() == QDialog::Accepted) {
        selected = dialog.selectedNameFilter();
        QString answer = dialog.selectedFiles().value(0);
        if (answer.isEmpty() || isWhole(answer, filters))
            return answer;
        // The dialog takes any dot for an ending, and has asked about the name without one.
        QString whole = answer + u'.' + formatOf(selected);
        if (mayReplace(parent, whole))
            return whole;
    }
    return {};
}
