#pragma once

#include "editing/history.h"

#include <QImage>

/// The step with its covers in the colours of what they come to lie on: of `picture`, which has no
/// shapes. A cover that is new gets its chance from `seed`; one that lies where it lay `before`
/// keeps its colours. Null if the step is.
OperationPtr withColors(const OperationPtr &step, const QList<EntryPtr> &before,
                        const QImage &picture, int seed);
/// A history with the covers of an earlier one below its shapes, as far as they were moved or taken
/// off since; the earlier one where it can't be told where they would be.
EditHistory stillCovered(const EditHistory &history, const EditHistory &covered, QSize picture);
/// The step, and with it the colours of grounds that are blurred pictures, if the step changes
/// what is covered: nothing of what covers hide shines through there. `picture` is that of `scene`,
/// and has no shapes.
OperationPtr withGround(const OperationPtr &step, const Scene &scene, const QImage &picture);
