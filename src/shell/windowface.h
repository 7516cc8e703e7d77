#pragma once

#include "shell/skin.h"

#include <QObject>

class QAbstractButton;
class QPushButton;
class TPictureEditor;
struct Tool;

namespace Ui {
class MainWindow;
}  // namespace Ui

/// What the main window looks like: caption, strips and what leaves them where they are narrow, and
/// the buttons' pictures as they are passed, pressed and chosen.
class WindowFace : public QObject
{
    Q_OBJECT

public:
    /// All outlive this object. The buttons have their commands already.
    WindowFace(Ui::MainWindow &ui, QWidget &window, Skin &skin, const TPictureEditor &editor);

    /// Hears the events of buttons and grounds before they do. True for one that goes no further.
    bool takes(QObject *watched, QEvent *event);
    /// Shows the tool buttons as the editor's state is; `over`, if not null, as under the pointer.
    void updateTools(QPushButton *over);
    /// Shows one of them anew: it can be used now, or no longer.
    void updateTool(const Tool &tool);
    /// Shows minimise, maximise and close as this program is in front or not.
    void updateControls();
    /// Shows a button as if the pointer had left it.
    void leave(QPushButton &button);
    void followFont();

private:
    void setUpCaption();
    void setUpLabels();
    void setUpStrips();
    QPushButton *toolButton(const Tool &tool) const;
    bool isChosenTool(const QAbstractButton &button) const;
    void show(QPushButton &button, SkinAttribute state);

    Ui::MainWindow &m_ui;
    QWidget &m_window;
    Skin &m_skin;
    const TPictureEditor &m_editor;
};
