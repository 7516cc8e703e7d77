#pragma once

#include <QWidget>

class QBoxLayout;

/// The page of the preferences for the keys that start grabs wherever the user is: the hot keys, or
/// as long as the desktop gives none the lines for its own configuration.
class KeysPage : public QWidget
{
    Q_OBJECT

public:
    explicit KeysPage(QWidget *parent = nullptr);
    ~KeysPage() override;

private:
    void fill();
    void addHotKeys(QBoxLayout &place);
    void addLines(QBoxLayout &place);

    QWidget *m_content = nullptr;
};
