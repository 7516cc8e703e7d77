#pragma once

#include <QObject>

class Workbench;

namespace Ui {
class MainWindow;
}  // namespace Ui

/// The box with the zoom and the size of the picture, on the edit strip.
class ZoomControls : public QObject
{
    Q_OBJECT

public:
    /// Both outlive this object.
    ZoomControls(Ui::MainWindow &ui, Workbench &work);

private:
    void refresh();

    Ui::MainWindow &m_ui;
    Workbench &m_work;
};
