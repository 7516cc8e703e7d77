#pragma once

#include <QDialog>
#include <QSize>

class QFormLayout;
class QLabel;
class QPushButton;

/// Asks for another size of a picture, and refuses one that no picture may have, with the reason.
/// All sizes are in pixels of the picture.
class SizeDialog : public QDialog
{
    Q_OBJECT

public:
    /// What the user asks for.
    virtual QSize wanted() const = 0;

protected:
    SizeDialog(const QString &title, QWidget *parent);

    /// What a field takes at most: more than a picture may have, so that the reason can be told.
    static constexpr int s_mostPixels = 99'999;

    QFormLayout &form() { return *m_form; }
    /// Tells what comes out, or why it can't be. To be called once all is there, and after each
    /// change.
    void check();

private:
    QFormLayout *m_form;
    QLabel *m_note;
    QPushButton *m_ok;
};
