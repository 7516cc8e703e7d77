#pragma once

#include "capture/grab.h"

#include <QList>
#include <QWidget>

#include <utility>

class QBoxLayout;
class QCheckBox;

/// The page of the preferences for how pictures are taken, and what becomes of them then. Each
/// change is written at once.
class CapturePage : public QWidget
{
    Q_OBJECT

public:
    explicit CapturePage(QWidget *parent = nullptr);

signals:
    /// Whether pins are kept for the next start.
    void pinsChanged();

private:
    void addGoals(QBoxLayout &place);
    void addMarking(QBoxLayout &place);
    void addPins(QBoxLayout &place);
    static void addWindow(QBoxLayout &place);
    void showGoals();

    QList<std::pair<QCheckBox *, GrabGoal>> m_goals{};
};
