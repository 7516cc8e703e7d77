#pragma once

#include <QSet>
#include <QString>
#include <QWidget>

#include <functional>
#include <optional>

class QBoxLayout;
class QComboBox;
class QLabel;
class QLineEdit;
class QSpinBox;

/// The page of the preferences for the files in which grabs are saved: where they are, what they
/// are called, and how they are written. Each change is written at once, but a folder or a name
/// that can't be used, which is told beside it.
class FilesPage : public QWidget
{
    Q_OBJECT

public:
    explicit FilesPage(QWidget *parent = nullptr);

protected:
    bool event(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void addFolder(QBoxLayout &place);
    void addName(QBoxLayout &place);
    void addFormat(QBoxLayout &place);
    void chooseFolder();
    void takeTyped();
    void takeFolder(const QString &folder);
    int freeNumber(const QString &folder, const std::function<QString(int)> &nameOf);
    void followName();
    void followFormat();

    QLineEdit *m_folder = nullptr;
    QLabel *m_folderFault = nullptr;
    QLineEdit *m_name = nullptr;
    QLabel *m_preview = nullptr;
    QComboBox *m_format = nullptr;
    QSpinBox *m_quality = nullptr;
    // What lies in the folder; none: to be looked at anew.
    std::optional<QSet<QString>> m_files{};
};
