#pragma once

#include <QKeySequence>
#include <QLineEdit>
#include <QTimer>

/// A field that takes the keys which are pressed in it, one with its modifiers. Delete asks for
/// none, Escape leaves them as they are, and Tab goes on to the next field.
class KeyField : public QLineEdit
{
    Q_OBJECT

public:
    explicit KeyField(QWidget *parent = nullptr);

    void setKeys(const QKeySequence &keys);

signals:
    /// These keys were pressed, or none are wanted. The field shows them when it is told to.
    void pressed(const QKeySequence &keys);
    /// The keys of a hot key of this program were pressed.
    void pressedHotKey(int number);
    void givenUp();
    /// Something was pressed that can't be a hot key, or did not come here; `why` is for the user.
    void refused(const QString &why);

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    void showKeys(Qt::KeyboardModifiers held);
    void endHeld();

    QKeySequence m_keys;
    Qt::KeyboardModifiers m_held{};  // with which no key has come so far
    QTimer m_heldWatch;              // looks whether they still are
};
