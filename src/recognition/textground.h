#pragma once

#include <QImage>

/// The picture as text is read best from it: dark on white, in grey, whatever it was on and however
/// often that changes. What differs from the ground around it is the darker the more it differs.
/// Transparent pixels count as white. Same size, Grayscale8.
QImage onWhite(const QImage &picture);
