#pragma once

#include <QWidget>

class QBoxLayout;

/// The page of the preferences for the keys that start grabs wherever the user is: the hot keys, or
/// on a desktop that has none for programs the lines for its own configuration.
class KeysPage : public QWidget
{
    Q_OBJECT

public:
    explicit KeysPage(QWidget *parent = nullptr);

private:
    void addHotKeys(QBoxLayout &place);
    void addLines(QBoxLayout &place);
};
