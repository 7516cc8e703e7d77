#include "shell/savedialog.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QImageWriter>

using namespace Qt::StringLiterals;

namespace {

// "png(*.png)" gives "png".
QString formatOf(const QString &filter) { return filter.section(u'(', 0, 0).trimmed(); }

bool hasPictureEnding(const QString &path)
{
    return QImageWriter::supportedImageFormats().contains(
        QFileInfo(path).suffix().toLower().toLatin1());
}

}  // namespace

QString askSaveFileName(QWidget *parent, const QString &path, const QString &filters,
                        QString &selected)
{
    QFileDialog dialog(parent, QString(), QString(), filters);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    const auto useEnding = [&dialog](const QString &filter) {
        dialog.setDefaultSuffix(formatOf(filter));
    };
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, useEnding);
    if (!selected.isEmpty())
        dialog.selectNameFilter(selected);
    useEnding(dialog.selectedNameFilter());
    dialog.setDirectory(QFileInfo(path).path());
    dialog.selectFile(path);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    selected = dialog.selectedNameFilter();
    const QString answer = dialog.selectedFiles().value(0);
    // The dialog leaves a name alone that has any dot in it, which a title from a window may well
    // have.
    return answer.isEmpty() || hasPictureEnding(answer) ? answer
                                                        : answer + u'.' + formatOf(selected);
}
