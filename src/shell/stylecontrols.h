#pragma once

#include <QFont>
#include <QList>
#include <QObject>

#include <functional>

class QColor;
class StyleMenu;
class TPictureEditor;
struct EditMsg;
struct Tool;

namespace Ui {
class MainWindow;
}  // namespace Ui

/// The second row of the edit strip: width, colour, style and font. It shows what the editor's tool
/// draws with; what the user sets there reaches the tool, and the settings.
class StyleControls : public QObject
{
    Q_OBJECT

public:
    /// Gives the editor what the settings tell. Both outlive this object.
    StyleControls(Ui::MainWindow &ui, TPictureEditor &editor);

    /// The tool, or what it draws with, is another one. Stores nothing.
    void refresh();
    /// Whether every tool keeps a style of its own, also over a restart.
    void remember(bool isRemembering);

    // What the user has chosen for the current tool.
    void setWidth(int width);  ///< picture pixels
    void setColor(const QColor &color);
    void setFont(const QFont &font);
    /// The same for anything else of a style.
    void change(const std::function<void(EditMsg &)> &change);

    void offerColors();
    void offerStyles();
    /// A font with the size that the size box shows.
    QFont sized(const QFont &font) const;

signals:
    /// The tool, or what it draws with, is another one, or the buttons are no longer pointed at
    /// since something has opened.
    void refreshed();

private:
    void store(const std::function<void()> &shared) const;
    void showWidth();
    QList<const Tool *> toolsInHand() const;
    void askForNumber();

    Ui::MainWindow &m_ui;
    TPictureEditor &m_editor;
    StyleMenu *m_menu;
};
