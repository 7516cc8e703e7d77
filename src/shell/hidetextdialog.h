#pragma once

#include "editing/tools/tool.h"
#include "recognition/secrets.h"

#include <QDialog>
#include <QImage>

class QComboBox;
class QLabel;
class QPushButton;
class QTreeWidget;
class SecretsView;

/// Shows the secrets that were found in a picture, each at its place, and asks which of them are to
/// be hidden, and how.
class HideTextDialog : public QDialog
{
    Q_OBJECT

public:
    /// There is at least one secret.
    HideTextDialog(const QImage &picture, QList<Secret> secrets, QWidget *parent);

    QList<Secret> chosen() const;
    /// With which they are to be covered.
    stateEnum tool() const;

private:
    void fillList();
    void fillTools();
    void connectList();
    void layOut(QWidget *buttons);
    bool isChosen(qsizetype index) const;

    QList<Secret> m_secrets;
    SecretsView *m_view;
    QTreeWidget *m_list;  ///< a row a secret
    QComboBox *m_tools;
    QLabel *m_advice;
    QPushButton *m_hide;
};
