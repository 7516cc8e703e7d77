#pragma once

class HandedFiles;
class QWidget;
class Workbench;

/// Lets the user drag the current picture, with its shapes, from a widget into another program,
/// until it is dropped. The other program gets pixels or a file, as it asks; a file is written only
/// then, and is gone again where the drop was refused. Does nothing without a picture.
void dragPicture(QWidget &source, Workbench &work, HandedFiles &files);
