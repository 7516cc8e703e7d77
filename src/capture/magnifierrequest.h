#pragma once

/// Requests of an overlay, or of the command that runs it, to the magnifier. The numbers are fixed.
enum EShowMagOpr {
    eMagOpen = 0,        ///< open the magnifier if the user wants one, and update it
    eMagClose = 1,       ///< close it
    eMagChangeMode = 2,  ///< switch between the two view modes
    eMagUpdate = 3,      ///< update it for a position on the desktop
    eMagMultiple = 4,    ///< by so many steps a larger multiple, or a smaller one; they come as x
};
