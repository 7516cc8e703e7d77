#pragma once

/// What an overlay, or the command that ran it, asks of the magnifier. The numbers are fixed.
enum EShowMagOpr {
    eMagOpen = 0,        ///< create it if the user wants one, and refresh it
    eMagClose = 1,       ///< close it
    eMagChangeMode = 2,  ///< switch between its two sizes
    eMagUpdate = 3,      ///< refresh it for a position on the desktop
};
