#include "shell/filespage.h"

#include "config/nametemplate.h"
#include "shell/pagelayout.h"
#include "shell/preferences.h"

#include <QComboBox>
#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_controlWidth = 96;  // as on the first page
constexpr int s_previewLines = 2;   // that a fault may need

// As the line below it, whose buddy it is.
QLabel *addLabel(QBoxLayout &place, const QString &text, QWidget &of)
{
    auto *label = new QLabel(text);
    label->setBuddy(&of);
    of.setAccessibleName(QString(text).remove(u'&'));
    place.addWidget(label);
    return label;
}

// Without its middle, where a name is so long that it would make the dialog wider.
QString shortened(const QString &name)
{
    constexpr qsizetype longest = 40;
    constexpr qsizetype end = 12;
    return name.size() <= longest ? name : name.left(longest - end) + u'\u2026' + name.right(end);
}

// As a shell reads what somebody types.
QString pathOf(const QString &typed)
{
    QString path = QDir::fromNativeSeparators(typed.trimmed());
    if (path == u"~" || path.startsWith(u"~/"_s))
        path.replace(0, 1, QDir::homePath());
    return path.isEmpty() ? path : QDir::cleanPath(path);
}

// Why pictures can't be saved in that folder; empty where they can.
QString faultOf(const QString &folder)
{
    const QFileInfo info(folder);
    if (info.isRelative())
        return FilesPage::tr("Not used: the whole path is needed, from its first \"/\" on.");
    if (!info.exists())
        return FilesPage::tr("Not used: there is no such folder.");
    if (!info.isDir())
        return FilesPage::tr("Not used: this is no folder.");
    return info.isWritable() ? QString()
                             : FilesPage::tr("Not used: nothing can be written to this folder.");
}

}  // namespace

FilesPage::FilesPage(QWidget *parent)
    : QWidget(parent), m_folder(new QLineEdit), m_folderFault(new QLabel), m_name(new QLineEdit),
      m_preview(new QLabel), m_format(new QComboBox), m_quality(new QSpinBox)
{
    QVBoxLayout *layout = pageLayout(*this);
    QVBoxLayout *where = addGroup(*layout, tr("Where Grabs Are Saved"));
    addFolder(*where);
    addName(*where);
    addFormat(*addGroup(*layout, tr("How They Are Written")));
    layout->addStretch();
}

void FilesPage::addFolder(QBoxLayout &place)
{
    addLabel(place, tr("Fol&der"), *m_folder);
    m_folder->setObjectName(u"EdtFolder"_s);
    m_folder->setText(QDir::toNativeSeparators(Preferences::pictureFolder()));
    connect(m_folder, &QLineEdit::editingFinished, this, &FilesPage::takeTyped);
    auto *choose = new QPushButton(tr("C&hoose..."));
    choose->setAutoDefault(false);
    connect(choose, &QPushButton::clicked, this, &FilesPage::chooseFolder);
    auto *row = new QHBoxLayout;
    row->addWidget(m_folder, 1);
    row->addWidget(choose);
    place.addLayout(row);
    m_folderFault->setObjectName(u"LblFolderFault"_s);
    m_folderFault->setWordWrap(true);
    m_folderFault->setMinimumWidth(1);
    m_folderFault->setTextFormat(Qt::PlainText);
    m_folderFault->hide();
    place.addWidget(m_folderFault);
}

void FilesPage::chooseFolder()
{
    const QString chosen = QFileDialog::getExistingDirectory(this, tr("Folder for Pictures"),
                                                             Preferences::pictureFolder());
    if (!chosen.isEmpty())
        takeFolder(chosen);
}

void FilesPage::takeTyped()
{
    // One that could not be used may have been made meanwhile.
    if (m_folder->isModified() || !m_folderFault->isHidden())
        takeFolder(pathOf(m_folder->text()));
}

// An empty one is the usual one. What can't be used stays in the field, to be mended.
void FilesPage::takeFolder(const QString &folder)
{
    QString fault = folder.isEmpty() ? QString() : faultOf(folder);
    if (fault.isEmpty())
        Preferences::setPictureFolder(folder);
    m_folder->setText(
        QDir::toNativeSeparators(fault.isEmpty() ? Preferences::pictureFolder() : folder));
    m_folder->setAccessibleDescription(fault);
    m_folderFault->setText(fault);
    m_folderFault->setVisible(!fault.isEmpty());
    m_files.reset();
    followName();
}

// Where the user comes back, there may be other files.
bool FilesPage::event(QEvent *event)
{
    if (event->type() == QEvent::Show || event->type() == QEvent::WindowActivate) {
        m_files.reset();
        followName();
    }
    return QWidget::event(event);
}

// The field is not left when its window is closed.
void FilesPage::hideEvent(QHideEvent *event)
{
    takeTyped();
    QWidget::hideEvent(event);
}

void FilesPage::addName(QBoxLayout &place)
{
    addLabel(place, tr("N&ame"), *m_name);
    m_name->setObjectName(u"EdtName"_s);
    m_name->setText(Preferences::pictureName());
    place.addWidget(m_name);
    m_preview->setObjectName(u"LblPreview"_s);
    m_preview->setWordWrap(true);
    m_preview->setMinimumWidth(1);  // a word without an end makes the dialog no wider
    m_preview->setTextFormat(Qt::PlainText);
    m_preview->setAlignment(Qt::AlignLeading | Qt::AlignTop);
    // The page must not jump about while a name is typed.
    m_preview->setMinimumHeight(s_previewLines * m_preview->fontMetrics().lineSpacing());
    place.addWidget(m_preview);
    auto *words = new QLabel(tr("{date}, {time}, {counter}, {application} and {title} stand for "
                                "what they say. {date:dd.MM.yy} and {counter:3} set the form."));
    words->setWordWrap(true);
    words->setTextFormat(Qt::PlainText);
    place.addWidget(words);
    connect(m_name, &QLineEdit::textChanged, this, [this](const QString &text) {
        if (NameTemplate(text).fault().isEmpty())
            Preferences::setPictureName(text);
        followName();
    });
}

void FilesPage::followName()
{
    const NameTemplate typed(m_name->text().isEmpty() ? NameTemplate::usual() : m_name->text());
    if (!typed.fault().isEmpty()) {
        m_preview->setText(typed.fault());
        return;
    }
    // The values are an example, and the number the one that would be free.
    const NameTemplate::Values values{QDateTime::currentDateTime(), tr("Mail"), tr("Inbox")};
    const auto nameOf = [&, ending = Preferences::pictureFormat().ending](int number) {
        return typed.fileName(values, number, ending);
    };
    const int number = freeNumber(Preferences::pictureFolder(), nameOf);
    m_preview->setText(tr("For example: %1").arg(shortened(nameOf(number))));
}

// The folder is read once, so that who types waits for no disk.
int FilesPage::freeNumber(const QString &folder, const std::function<QString(int)> &nameOf)
{
    if (!m_files) {
        const auto everything = QDir::AllEntries | QDir::Hidden | QDir::System;
        const QStringList names = QDir(folder).entryList(everything, QDir::Unsorted);
        m_files.emplace(names.begin(), names.end());
    }
    int number = 1;
    while (m_files->contains(nameOf(number)))
        ++number;
    return number;
}

void FilesPage::addFormat(QBoxLayout &place)
{
    for (const Preferences::PictureFormat &format : Preferences::pictureFormats())
        m_format->addItem(format.ending.toUpper(), format.ending);
    m_format->setCurrentIndex(m_format->findData(Preferences::pictureFormat().ending));
    m_quality->setRange(1, 100);
    m_quality->setValue(Preferences::pictureQuality());
    const auto addRow = [&](const QString &text, QWidget &control) {
        auto *row = new QHBoxLayout;
        addLabel(*row, text, control);
        row->addStretch();
        control.setMinimumWidth(s_controlWidth);
        row->addWidget(&control);
        place.addLayout(row);
    };
    addRow(tr("For&mat"), *m_format);
    addRow(tr("&Quality"), *m_quality);
    connect(m_format, &QComboBox::currentIndexChanged, this, [this] {
        Preferences::setPictureFormat(m_format->currentData().toString());
        followFormat();
    });
    connect(m_quality, &QSpinBox::valueChanged, this, &Preferences::setPictureQuality);
    followFormat();
}

void FilesPage::followFormat()
{
    m_quality->setEnabled(Preferences::pictureFormat().hasQuality);
    followName();
}
