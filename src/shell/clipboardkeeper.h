#pragma once

/// Leaves what was copied in this program with a small process of its own, which keeps it when this
/// one has ended; also where there is a clipboard manager, for not every one takes pictures. Does
/// nothing where another program has copied something since. Waits for the change, some seconds at
/// the most. Needs the services; at the end of the program.
void leaveClipboard();
