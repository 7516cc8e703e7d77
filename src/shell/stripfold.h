#pragma once

#include <QColor>
#include <QKeySequence>
#include <QList>
#include <QObject>

#include <functional>

class QAbstractButton;
class QBoxLayout;
class QKeyEvent;
class QMenu;
class QPushButton;
class QWidget;

/// Keeps everything on a strip within reach where the strip has too little room: what does not fit
/// leaves it for a menu, which opens from a button at the strip's end. There a button is an item,
/// and what else can be set stands there itself while the menu is open.
class StripFold : public QObject
{
    Q_OBJECT

public:
    /// Widgets of the strip that leave it together. Those in none stay.
    using Unit = QList<QWidget *>;

    struct Look {
        QString id{};         ///< the button's object name
        QString name{};       ///< of the button, as told to the user
        QKeySequence keys{};  ///< that open the menu
        QColor color{};       ///< of the button, and of letters in the menu
        QColor ground{};      ///< that suits the pictures of the strip's buttons
    };

    /// `strip` has a box layout and gets the button. Of the units the first one leaves first.
    /// `isChosen` tells of a button whether it shows what is in force.
    StripFold(QWidget *strip, QList<Unit> units, const Look &look,
              std::function<bool(const QAbstractButton &)> isChosen);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Borrowed {
        QWidget *widget = nullptr;
        int index = 0;  ///< in the strip's layout
        Qt::Alignment alignment{};
    };

    QBoxLayout &layout() const;
    int widthOf(const Unit &unit) const;
    void fit();
    void fillMenu();
    void addItem(QAbstractButton &button);
    void addRow(QWidget &widget);
    bool passKey(QObject &widget, QKeyEvent &key);
    void giveBack();

    QWidget *m_strip;
    QList<Unit> m_units;
    std::function<bool(const QAbstractButton &)> m_isChosen;
    QPushButton *m_button;
    QMenu *m_menu;
    qsizetype m_folded = 0;        ///< so many units are off the strip
    QList<Borrowed> m_borrowed{};  ///< in the menu, by when they were taken
};

/// Gives the keys to a control of a strip. Where the strip has no room for it, the menu opens in
/// which it stands.
void enterStripControl(QWidget &control);
