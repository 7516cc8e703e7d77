#pragma once

#include <QDialog>
#include <QIcon>

/// Who made this program, in which version, where it lives, and whether it is registered: all of it
/// from the application record and the licence, as they are when the box is made.
class AboutBox : public QDialog
{
    Q_OBJECT

public:
    /// A null icon is left out.
    AboutBox(const QIcon &icon, QWidget *parent);

private:
    QWidget *closeButton();
};
