#include "shell/keyfield.h"

#include "platform/hotkeys.h"

#include <QGuiApplication>
#include <QKeyEvent>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr auto s_modifiers =
    Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier | Qt::MetaModifier;

constexpr int s_heldInterval = 50;  // ms

bool isModifier(int key)
{
    constexpr std::array keys{Qt::Key_Control, Qt::Key_Alt,      Qt::Key_AltGr,
                              Qt::Key_Shift,   Qt::Key_Meta,     Qt::Key_Super_L,
                              Qt::Key_Super_R, Qt::Key_CapsLock, Qt::Key_NumLock};
    return std::find(keys.begin(), keys.end(), key) != keys.end();
}

// With some modifiers keyboards have another name for the same key.
int plainKey(int key)
{
    switch (key) {
    case Qt::Key_SysReq:
        return Qt::Key_Print;
    case Qt::Key_Backtab:
        return Qt::Key_Tab;
    default:
        return key;
    }
}

}  // namespace

KeyField::KeyField(QWidget *parent) : QLineEdit(parent)
{
    setReadOnly(true);
    setPlaceholderText(tr("none"));
    // Who has the key may get the releases as well.
    m_heldWatch.setInterval(s_heldInterval);
    connect(&m_heldWatch, &QTimer::timeout, this, [this] {
        if (!(QGuiApplication::queryKeyboardModifiers() & s_modifiers))
            endHeld();
    });
}

void KeyField::setKeys(const QKeySequence &keys)
{
    m_keys = keys;
    showKeys(Qt::NoModifier);
}

void KeyField::showKeys(Qt::KeyboardModifiers held)
{
    setText(held == Qt::NoModifier ? m_keys.toString(QKeySequence::NativeText)
                                   : QKeySequence(QKeyCombination(held, static_cast<Qt::Key>(0)))
                                         .toString(QKeySequence::NativeText));
}

// What another program has taken comes to nobody else, nor what switches the system's consoles: of
// that there are the modifiers only.
void KeyField::endHeld()
{
    m_heldWatch.stop();
    QString held = text();
    showKeys(Qt::NoModifier);
    if (std::exchange(m_held, {}) == Qt::NoModifier)
        return;
    if (held.endsWith(u'+'))
        held.chop(1);
    emit refused(tr("No key came with %1: another program, the desktop or the system may have it.")
                     .arg(held));
}

// Else the keys of menus and buttons would be heard first.
bool KeyField::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        event->accept();
        return true;
    }
    // Tab alone leads on, but with Ctrl or Alt it is a key as any other.
    if (event->type() == QEvent::KeyPress) {
        auto *press = static_cast<QKeyEvent *>(event);
        const bool isTab = press->key() == Qt::Key_Tab || press->key() == Qt::Key_Backtab;
        if (isTab && press->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) {
            keyPressEvent(press);
            return true;
        }
    }
    return QLineEdit::event(event);
}

void KeyField::keyPressEvent(QKeyEvent *event)
{
    event->accept();
    const Qt::KeyboardModifiers modifiers = event->modifiers() & s_modifiers;
    const int key = plainKey(event->key());
    if (event->isAutoRepeat())
        return;
    if (isModifier(key)) {
        m_held = modifiers;
        m_heldWatch.start();
        showKeys(modifiers);
        return;
    }
    m_held = {};
    showKeys(Qt::NoModifier);
    if (key == Qt::Key_unknown || key == 0)
        emit refused(tr("This key can't be a hot key."));
    else if (modifiers == Qt::NoModifier && key == Qt::Key_Escape)
        emit givenUp();
    else if (modifiers == Qt::NoModifier && (key == Qt::Key_Delete || key == Qt::Key_Backspace))
        emit pressed({});
    else
        emit pressed(QKeySequence(QKeyCombination(modifiers, static_cast<Qt::Key>(key))));
}

void KeyField::keyReleaseEvent(QKeyEvent *event)
{
    event->accept();
    if (isModifier(event->key()))
        endHeld();
}

// The hot keys that are registered come by another way than the keys, and would start a grab.
void KeyField::focusInEvent(QFocusEvent *event)
{
    QLineEdit::focusInEvent(event);
    catchHotKeys([this](int number) {
        m_held = {};
        showKeys(Qt::NoModifier);
        emit pressedHotKey(number);
    });
}

void KeyField::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    catchHotKeys({});
    // A key that another program has may bring that to the front; others leave by themselves.
    if (event->reason() != Qt::ActiveWindowFocusReason)
        m_held = {};
    endHeld();
}

void KeyField::contextMenuEvent(QContextMenuEvent *event) { event->ignore(); }
