#pragma once

#include <QMenu>

#include <functional>

struct EditMsg;

/// What the user can choose of a style besides width and colour.
class StyleMenu : public QMenu
{
    Q_OBJECT

public:
    explicit StyleMenu(QWidget *parent);

    /// Shows a style. Only what is among `uses`, flags of ToolUse, can be chosen.
    void follow(const EditMsg &style, unsigned uses);

signals:
    /// The function makes a style one that has what was chosen.
    void chosen(const std::function<void(EditMsg &)> &change);
    /// The user wants to say what the next marker shows.
    void numberWanted();

private:
    QAction *m_number;
};
