#pragma once

#include <QStringList>
#include <QWidget>

class KeyField;
class QBoxLayout;
class QCheckBox;
class QComboBox;
class QKeySequence;
class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

/// The page of the preferences for the keys that start grabs wherever the user is: the hot keys,
/// where each can be changed, or as long as the desktop gives none the lines for its own
/// configuration. What is changed is stored and in force at once.
class KeysPage : public QWidget
{
    Q_OBJECT

public:
    explicit KeysPage(QWidget *parent = nullptr);
    ~KeysPage() override;

signals:
    /// Hot keys are other ones now.
    void changed();

private:
    void fill();
    void follow();
    void addHotKeys(QBoxLayout &place);
    void addRows();
    void addDetails(QBoxLayout &place);
    void addLines(QBoxLayout &place);
    static QStringList stateTexts();
    int number() const;
    void showRow(QTreeWidgetItem &row);
    void showDetails();
    void setKeys(int number, const QKeySequence &keys);
    void refuse(const QString &why);
    QString advice() const;
    void switchRow(QTreeWidgetItem &row);

    QWidget *m_content = nullptr;
    // Null while there are only lines.
    QTreeWidget *m_list = nullptr;
    KeyField *m_field = nullptr;
    QPushButton *m_default = nullptr;  ///< or what switches the row on
    QLabel *m_word = nullptr;
    QComboBox *m_then = nullptr;
    QCheckBox *m_countsDown = nullptr;
};
