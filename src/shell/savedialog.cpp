#include "shell/savedialog.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QImageWriter>
#include <QMessageBox>

using namespace Qt::StringLiterals;

namespace {

// "png(*.png)" gives "png".
QString formatOf(const QString &filter) { return filter.section(u'(', 0, 0).trimmed(); }

bool hasPictureEnding(const QString &path)
{
    return QImageWriter::supportedImageFormats().contains(
        QFileInfo(path).suffix().toLower().toLatin1());
}

bool mayReplace(QWidget *parent, const QString &path)
{
    if (!QFileInfo::exists(path))
        return true;
    const QString question = QCoreApplication::translate(
        "QFileDialog", "%1 already exists.\nDo you want to replace it?");
    return QMessageBox::warning(parent, QString(), question.arg(QFileInfo(path).fileName()),
                                QMessageBox::Yes | QMessageBox::No,
                                QMessageBox::No) == QMessageBox::Yes;
}

}  // namespace

QString askSaveFileName(QWidget *parent, const QString &path, const QString &filters,
                        QString &selected)
{
    const QString folder = QFileInfo(path).path();
    QFileDialog dialog(parent, QString(), QDir(folder).exists() ? folder : QDir::homePath(),
                       filters);
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
    dialog.selectFile(QFileInfo(path).fileName());
    while (dialog.exec() == QDialog::Accepted) {
        selected = dialog.selectedNameFilter();
        QString answer = dialog.selectedFiles().value(0);
        if (answer.isEmpty() || hasPictureEnding(answer))
            return answer;
        // The dialog takes any dot for an ending, and has asked about the name without one.
        QString whole = answer + u'.' + formatOf(selected);
        if (mayReplace(parent, whole))
            return whole;
    }
    return {};
}
