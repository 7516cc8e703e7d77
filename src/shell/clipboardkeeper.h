#pragma once

/// Leaves what was copied in this program with a small process of its own, which keeps it when this
/// one has ended. Does nothing where another program has copied something since, or where the
/// desktop has a clipboard manager: the toolkit hands it over to that. Waits for the change, some
/// seconds at the most. Needs the services; at the end of the program.
void leaveClipboard();
